#include <QCoreApplication>

#include <gtest/gtest.h>

// The HTTP client waits in local event loops, which need an application object.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
