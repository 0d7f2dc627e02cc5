// The QGuiApplication of a test program, without a display or a graphics card.

#include <memory>

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

/// Read by the leak checker where there is one.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libQt6Pdf"; // Qt 6.4 forgets what it made for a file that it could not read
}

namespace noctra {

namespace {

class GuiApplication : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
        application_ = std::make_unique<QGuiApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[6] = "tests";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QGuiApplication> application_;
};

[[maybe_unused]] testing::Environment* const application =
    testing::AddGlobalTestEnvironment(new GuiApplication);

} // namespace

} // namespace noctra
