#include "platform/qt/QtPreferences.h"

#include <cmath>
#include <csignal>
#include <future>
#include <memory>

#include <sys/resource.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

namespace {

struct QtPreferencesTest : testing::Test {
    QTemporaryDir home;
    const QString folder = home.filePath("config/noctra/");
    const QString path = folder + "noctra.conf";
    SimulatedDesktop desktop;
    std::unique_ptr<QtPreferences> preferences;

    void open() {
        preferences.reset(); // the last one writes what it has still to write
        preferences = std::make_unique<QtPreferences>(path, desktop.mainQueue, desktop.log);
    }
    void openWith(const QByteArray& contents) {
        QDir().mkpath(folder);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
        file.close();
        open();
    }
    void save(double brightness) {
        preferences->setDouble("filterBrightness", brightness);
        preferences->flush();
    }
    static QByteArray contentsOf(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    [[nodiscard]] bool holds(const char* text) const { return contentsOf(path).contains(text); }
};

} // namespace

TEST_F(QtPreferencesTest, KeepWhatWasWrittenAndEveryKeyTheyDoNotKnow) {
    openWith("[General]\nfuture=1, 2\n\n[Other]\nkey=value\n");
    preferences->setBool("allowExtremeDim", true);
    preferences->setDouble("filterBrightness", 0.1 + 0.2);
    EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.1 + 0.2) << "before it is on disk";
    preferences->flush();
    EXPECT_TRUE(holds("future=1, 2") && holds("[Other]\nkey=value"));
    open();
    EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.1 + 0.2) << "to the last bit";
    EXPECT_TRUE(preferences->boolForKey("allowExtremeDim"));
    EXPECT_TRUE(desktop.log.messages.empty());
}

TEST_F(QtPreferencesTest, TellAMissingKeyFromAStoredZeroAndSayWhichValueTheyIgnored) {
    openWith("[General]\nzero=0\ntext=abc\nlist=1, 2\nyes=yes\nno=false\nnan=nan\nempty=\n");
    EXPECT_EQ(preferences->numberForKey("missing"), std::nullopt);
    EXPECT_EQ(preferences->numberForKey("zero"), 0.0);
    EXPECT_EQ(preferences->doubleForKey("missing"), 0.0);
    EXPECT_TRUE(std::isnan(preferences->doubleForKey("nan"))) << "the engine refuses it";
    EXPECT_TRUE(preferences->boolForKey("yes"));
    EXPECT_FALSE(preferences->boolForKey("no") || preferences->boolForKey("missing"));
    EXPECT_TRUE(desktop.log.messages.empty());
    for (const char* key : {"text", "list", "empty"}) {
        EXPECT_EQ(preferences->numberForKey(key), std::nullopt) << key;
        EXPECT_EQ(desktop.log.messages.back(),
                  std::string("ERROR: Ignored the preference ") + key + ", which is not a number");
    }
}

TEST_F(QtPreferencesTest, NeverWriteOverWhatTheyCouldNotKeepACopyOf) {
    openWith("# precious\n[General]\nfilterBrightness=0.25\n");
    for (int number = 1; number < 1000; ++number) // no name is left for a copy
        QFile::link("nowhere", path + ".before-" + QString::number(number));
    save(0.5);
    EXPECT_TRUE(holds("# precious"));
    EXPECT_EQ(desktop.log.messages.size(), 1U);
}

TEST_F(QtPreferencesTest, WriteThroughLinksToAFileThatIsNotThereYet) {
    ASSERT_TRUE(QDir().mkpath(folder) && QFile::link("elsewhere.conf", path) &&
                QFile::link("far/away.conf", folder + "elsewhere.conf"));
    open();
    save(0.5);
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_TRUE(contentsOf(folder + "far/away.conf").contains("=0.5"));
    EXPECT_TRUE(desktop.log.messages.empty());
}

TEST_F(QtPreferencesTest, MoveADamagedFileAsideAndNeverOverAnEarlierOne) {
    // Lists in lists: reading them takes more stack than there is. The others ask for gigabytes.
    const QByteArray deep =
        "[General]\nx=@Variant(" + QByteArray("\\0\\0\\0\t\\0\\0\\0\x01").repeated(4000) + ")\n";
    int number = 0;
    for (const QByteArray& garbage :
         {QByteArray("\x00\xFF garbage without any sense\n\x01\x02", 32), QByteArray(300, '\0'),
          QByteArray("[General\nfilterBrightness=0.9\n"), QByteArray(1 << 17, '='), deep,
          QByteArray(R"(x=a, @Variant(\0\0\0\xf\x7f\xff\xff\xff))"),
          QByteArray(R"(x="\x40\126ar"i\zant(\0\0\0\xf\x7f\xff\xff\xff))")}) {
        ++number;
        openWith(garbage);
        EXPECT_EQ(preferences->numberForKey("filterBrightness"), std::nullopt) << number;
        save(0.5);
        EXPECT_EQ(contentsOf(path + ".damaged-" + QString::number(number)), garbage) << number;
        EXPECT_EQ(desktop.log.messages.size(), static_cast<std::size_t>(number));
        open();
        EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.5) << "the new file is good";
    }
}

TEST_F(QtPreferencesTest, ReadWhatPeopleWriteByHandAndKeepACopyOfWhatRewritingWouldLose) {
    const struct {
        QByteArray contents;
        bool isCopied;
    } cases[] = {
        {"[General]\nfilterBrightness=0.25\n", false},
        {"\r\n[General]\r\nfilterBrightness=0.25\r\nkey=a, b\r\n", false},
        {"# warm\n[General]\nfilterBrightness=0.25\n", true},
        {"; warm\n[General]\nfilterBrightness=0.25\n", true},
        {"\xEF\xBB\xBF[General]\nfilterBrightness=0.25\n", true},
        {"[General]\nfilterBrightness=0.25\nother=caf\xE9\n", true},
        {"[General]\nx=1\nfilterBrightness=0.25\nx=2\n", true},
        {"[General]\nfilterBrightness=0.25\ngroup/=1\n", true}, // comes back as [group] and =1
        // Foreign, and yet the same when QSettings has written it.
        {"[General]\nfilterBrightness=0.25\nother=caf\xC3\xA9\nx=@ByteArray(a)\n", false},
    };
    for (const auto& [contents, isCopied] : cases) {
        SCOPED_TRACE(contents.toStdString());
        QFile::remove(path + ".before-1");
        desktop.log.messages.clear();
        openWith(contents);
        EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.25);
        save(0.5);
        EXPECT_EQ(contentsOf(path + ".before-1"), isCopied ? contents : "(none)");
        EXPECT_EQ(desktop.log.messages.size(), isCopied ? 1U : 0U);
        save(0.6);
        open();
        save(0.7);
        EXPECT_TRUE(holds("filterBrightness=0.7"));
        EXPECT_FALSE(QFile::exists(path + ".before-2"));
    }
}

TEST_F(QtPreferencesTest, OnAFullDiskLoseNeitherWhatIsInTheFileNorWhatShouldHaveBeen) {
    const QByteArray before = "[General]\nfuture=" + QByteArray(2000, 'x') + "\n";
    openWith(before);
    struct : Log {
        std::promise<void> failed;
        void log(std::string_view) override { failed.set_value(); }
    } log;
    preferences = std::make_unique<QtPreferences>(path, desktop.mainQueue, log);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full{1000, limit.rlim_max}; // room for a lock, not for the file
    setrlimit(RLIMIT_FSIZE, &full);
    preferences->setBool("pwmSafeMode", true);
    preferences->setDouble("filterIntensity", 0.25);
    desktop.settle();
    preferences->setDouble("filterIntensity", 0.75); // while the older one is failing
    log.failed.get_future().wait();
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(contentsOf(path), before);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 1);
    save(0.5);
    for (const char* line :
         {"pwmSafeMode=true\n", "filterBrightness=0.5\n", "filterIntensity=0.75\n", "future=xx"})
        EXPECT_TRUE(holds(line)) << line;
    preferences.reset();
}

} // namespace noctra
