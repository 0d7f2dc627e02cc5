#include <QtCore/QCoreApplication>
#include <gtest/gtest.h>

// The message bus library wants an application object while it is used.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
