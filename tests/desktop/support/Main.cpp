#include <QtCore/QCoreApplication>
#include <csignal>
#include <gtest/gtest.h>

// The message bus library wants an application object while it is used.
int main(int argc, char** argv) {
    // A program that has gone and is written to is an error of the write, not the tests' end.
    std::signal(SIGPIPE, SIG_IGN);
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
