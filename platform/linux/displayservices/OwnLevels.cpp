#include "platform/linux/displayservices/OwnLevels.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra::display_services {

namespace {

constexpr std::size_t mostBytes = 65536;

OwnLevels::Map parse(const std::string& text) {
    OwnLevels::Map levels;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        LevelOwner owner;
        OwnLevel level;
        std::string rest;
        if (words >> owner.first >> owner.second >> level.raw >> level.maximum &&
            !(words >> rest) && level.maximum > 0 && level.raw <= level.maximum)
            levels[owner] = level;
    }
    return levels;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(mostBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return text;
}

/// On disk when it returns; false where that failed.
bool writeAndSync(const std::string& path, const std::string& text) {
    const int file =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    const bool written =
        ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        ::fsync(file) == 0;
    return ::close(file) == 0 && written;
}

void syncFolder(const std::string& path) {
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

} // namespace

OwnLevels::OwnLevels(std::string file) : file_(std::move(file)) {
    if (!file_.empty())
        saved_ = leftOvers_ = parse(readFile(file_));
}

bool OwnLevels::hasLeftOvers() const {
    const std::lock_guard lock(mutex_);
    return !leftOvers_.empty();
}

std::optional<OwnLevel> OwnLevels::take(const LevelOwner& owner, From from) {
    const std::lock_guard lock(mutex_);
    auto found = leftOvers_.find(owner);
    if (found == leftOvers_.end() && from == From::anyConnector)
        found = std::ranges::find_if(
            leftOvers_, [&](const auto& entry) { return entry.first.first == owner.first; });
    if (found == leftOvers_.end())
        return std::nullopt;
    const OwnLevel level = found->second;
    leftOvers_.erase(found);
    return level;
}

void OwnLevels::save(const std::function<Map()>& levels) {
    const std::lock_guard turn(turn_);
    // First: what is taken over meanwhile is in both, and not in neither.
    Map left;
    {
        const std::lock_guard lock(mutex_);
        left = leftOvers_;
    }
    Map all = levels();
    all.merge(left);
    if (file_.empty() || all == saved_ || !write(all))
        return;
    saved_ = std::move(all);
}

bool OwnLevels::write(const Map& levels) const {
    const std::string folder = std::filesystem::path(file_).parent_path();
    if (levels.empty()) {
        const bool gone = ::unlink(file_.c_str()) == 0 || errno == ENOENT;
        syncFolder(folder);
        return gone;
    }
    std::ostringstream text;
    for (const auto& [owner, level] : levels)
        text << owner.first << ' ' << owner.second << ' ' << level.raw << ' ' << level.maximum
             << '\n';
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string fresh = file_ + ".new";
    if (!writeAndSync(fresh, text.str()) || ::rename(fresh.c_str(), file_.c_str()) != 0) {
        ::unlink(fresh.c_str());
        return false;
    }
    syncFolder(folder);
    return true;
}

} // namespace noctra::display_services
