#include "platform/qt/QtPreferences.h"

#include <cmath>
#include <csignal>
#include <memory>
#include <utility>
#include <vector>

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
    const QString path = home.filePath("config/noctra/noctra.conf");
    SimulatedDesktop desktop;

    std::unique_ptr<QtPreferences> open() {
        return std::make_unique<QtPreferences>(path, desktop.mainQueue, desktop.log);
    }
    void store(const QByteArray& contents) {
        QDir().mkpath(home.filePath("config/noctra"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    static QByteArray contentsOf(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
};

} // namespace

TEST_F(QtPreferencesTest, KeepWhatWasWrittenAndEveryKeyTheyDoNotKnow) {
    store("[General]\nfuture=1, 2\n\n[Other]\nkey=value\n");
    auto preferences = open();
    preferences->setDouble("filterBrightness", 0.1 + 0.2);
    preferences->setBool("allowExtremeDim", true);
    EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.1 + 0.2) << "before it is on disk";
    preferences->flush();
    const QByteArray saved = contentsOf(path);
    EXPECT_TRUE(saved.contains("future=1, 2")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("[Other]\nkey=value")) << saved.toStdString();

    preferences = open();
    EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.1 + 0.2) << "to the last bit";
    EXPECT_TRUE(preferences->boolForKey("allowExtremeDim"));
    EXPECT_TRUE(desktop.log.messages.empty());
}

TEST_F(QtPreferencesTest, TellAMissingKeyFromAStoredZeroAndSayWhichValueTheyIgnored) {
    store("[General]\nzero=0\ntext=abc\nlist=1, 2\nyes=yes\nno=false\nnan=nan\nempty=\n");
    const auto preferences = open();
    EXPECT_EQ(preferences->numberForKey("missing"), std::nullopt);
    EXPECT_EQ(preferences->numberForKey("zero"), 0.0);
    EXPECT_EQ(preferences->doubleForKey("missing"), 0.0);
    EXPECT_TRUE(std::isnan(preferences->doubleForKey("nan"))) << "the engine refuses it";
    EXPECT_TRUE(preferences->boolForKey("yes"));
    EXPECT_FALSE(preferences->boolForKey("no"));
    EXPECT_FALSE(preferences->boolForKey("missing"));
    EXPECT_TRUE(desktop.log.messages.empty());

    for (const char* key : {"text", "list", "empty"}) {
        EXPECT_EQ(preferences->numberForKey(key), std::nullopt) << key;
        EXPECT_FALSE(preferences->boolForKey(key)) << key;
        EXPECT_EQ(desktop.log.count(std::string("ERROR: Ignored the preference ") + key +
                                    ", which is not a number"),
                  1U);
    }
}

TEST_F(QtPreferencesTest, NeverWriteOverWhatTheyCouldNotKeepACopyOf) {
    store("# precious\n[General]\nfilterBrightness=0.25\n");
    for (int number = 1; number < 1000; ++number) // no name is left for a copy
        QFile::link("nowhere", path + ".before-" + QString::number(number));
    const auto preferences = open();
    preferences->setDouble("filterBrightness", 0.5);
    preferences->flush();
    EXPECT_TRUE(contentsOf(path).startsWith("# precious")) << contentsOf(path).toStdString();
    EXPECT_EQ(desktop.log.messages.size(), 1U);
}

TEST_F(QtPreferencesTest, WriteThroughLinksToAFileThatIsNotThereYet) {
    const QString folder = home.filePath("config/noctra/");
    ASSERT_TRUE(QDir().mkpath(folder) && QFile::link("elsewhere.conf", path) &&
                QFile::link("far/away.conf", folder + "elsewhere.conf"));
    const auto preferences = open();
    preferences->setDouble("filterBrightness", 0.5);
    preferences->flush();
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_TRUE(contentsOf(folder + "far/away.conf").contains("=0.5"));
    EXPECT_EQ(desktop.log.messages.size(), 0U);
}

TEST_F(QtPreferencesTest, MoveADamagedFileAsideAndNeverOverAnEarlierOne) {
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte.append(static_cast<char>(byte));
    // Lists in lists: reading them takes more stack than there is. The others ask for gigabytes.
    const QByteArray deep =
        "[General]\nx=@Variant(" + QByteArray("\\0\\0\\0\t\\0\\0\\0\x01").repeated(4000) + ")\n";
    int number = 0;
    for (const QByteArray& garbage :
         {QByteArray("\x00\xFF garbage without any sense\n\x01\x02", 32), everyByte,
          QByteArray(300, '\0'), QByteArray("[General\nfilterBrightness=0.9\n"),
          QByteArray("\xFF\xFE[\0G\0", 6), QByteArray(1 << 17, '='), deep,
          QByteArray(R"(x=a, @Variant(\0\0\0\xf\x7f\xff\xff\xff))"),
          QByteArray(R"(x="\x40\126ar"i\zant(\0\0\0\xf\x7f\xff\xff\xff))")}) {
        ++number;
        store(garbage);
        const auto preferences = open();
        EXPECT_EQ(preferences->numberForKey("filterBrightness"), std::nullopt) << number;
        preferences->setDouble("filterBrightness", 0.5);
        preferences->flush();
        EXPECT_EQ(contentsOf(path + ".damaged-" + QString::number(number)), garbage) << number;
        EXPECT_TRUE(contentsOf(path).contains("filterBrightness=0.5"));
        EXPECT_EQ(desktop.log.messages.size(), static_cast<std::size_t>(number));
    }
    EXPECT_TRUE(open()->numberForKey("filterBrightness")) << "the new file is a good one";
}

TEST_F(QtPreferencesTest, ReadWhatPeopleWriteByHandAndKeepACopyOfWhatRewritingWouldLose) {
    const std::vector<std::pair<QByteArray, bool>> cases{
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
    for (const auto& [contents, copied] : cases) {
        QFile::remove(path + ".before-1");
        desktop.log.messages.clear();
        store(contents);
        auto preferences = open();
        EXPECT_EQ(preferences->numberForKey("filterBrightness"), 0.25) << contents.toStdString();
        preferences->setDouble("filterBrightness", 0.5);
        preferences->flush();
        EXPECT_EQ(contentsOf(path + ".before-1"), copied ? contents : "(none)");
        EXPECT_EQ(desktop.log.messages.size(), copied ? 1U : 0U) << contents.toStdString();
        preferences->setDouble("filterBrightness", 0.6);
        preferences->flush();
        preferences = open();
        preferences->setDouble("filterBrightness", 0.7);
        preferences->flush();
        EXPECT_TRUE(contentsOf(path).contains("filterBrightness=0.7")) << contents.toStdString();
        EXPECT_FALSE(QFile::exists(path + ".before-2")) << contents.toStdString();
    }
}

TEST_F(QtPreferencesTest, OnAFullDiskLoseNeitherWhatIsInTheFileNorWhatShouldHaveBeen) {
    const QByteArray before = "[General]\nfuture=" + QByteArray(2000, 'x') + "\n";
    store(before);
    const auto preferences = open();
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full{1000, limit.rlim_max}; // room for a lock, not for the file
    setrlimit(RLIMIT_FSIZE, &full);
    preferences->setBool("pwmSafeMode", true);
    preferences->flush();
    for (int value = 0; value <= 200; ++value) { // each while an older one may just be failing
        preferences->setDouble("filterIntensity", value);
        desktop.settle();
    }
    preferences->flush();
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(contentsOf(path), before);
    EXPECT_EQ(QDir(home.filePath("config/noctra")).entryList(QDir::Files).size(), 1);

    preferences->setBool("filterEnabled", true);
    preferences->flush();
    for (const char* line :
         {"pwmSafeMode=true\n", "filterEnabled=true\n", "filterIntensity=200\n", "future=xx"})
        EXPECT_TRUE(contentsOf(path).contains(line)) << line;
}

} // namespace noctra
