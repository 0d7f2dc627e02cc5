#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace noctra::display_services {

/// A level that was a display's own, in the display's units.
struct OwnLevel {
    unsigned int raw = 0;
    unsigned int maximum = 1; ///< full brightness, at least 1

    [[nodiscard]] float fraction() const {
        return static_cast<float>(raw) / static_cast<float>(maximum);
    }
    friend bool operator==(const OwnLevel&, const OwnLevel&) = default;
};

/// Whose level it is: what tells the display from others, and the connector where it was, which
/// tells twins apart. Neither is empty or has white space.
using LevelOwner = std::pair<std::string, std::string>;

/// The levels that displays had before the program changed them, on disk from before the first
/// write until they have been put back, for the run after one that could not do that. A text file
/// with one level in a line: owner, connector, value, maximum. It is replaced as a whole, readable
/// by its user alone, and removed when nothing is left in it. Any thread.
class OwnLevels {
public:
    using Map = std::map<LevelOwner, OwnLevel>;

    /// Reads `file`; lines that make no sense, and everything behind the first 64 KiB, are left
    /// out. Empty: nothing is remembered.
    explicit OwnLevels(std::string file);

    /// Earlier runs have left levels that nobody has taken so far.
    [[nodiscard]] bool hasLeftOvers() const;
    enum class From { sameConnector, anyConnector };
    /// Takes over what an earlier run has left of `owner`. Does not wait for the disk.
    [[nodiscard]] std::optional<OwnLevel> take(const LevelOwner& owner, From from);
    /// Makes the file say what `levels` returns, and what nobody has taken. Where it does already
    /// nothing is written. Waits for the disk. Where the file cannot be written, that is tried
    /// again with the next call. `levels` may wait for those who call the operations above.
    void save(const std::function<Map()>& levels);

private:
    [[nodiscard]] bool write(const Map& levels) const;

    const std::string file_;
    std::mutex turn_; // of save
    Map saved_;       // what the file says; guarded by turn_
    mutable std::mutex mutex_;
    Map leftOvers_; // guarded by mutex_
};

} // namespace noctra::display_services
