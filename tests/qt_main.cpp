#include <QCoreApplication>

#include <gtest/gtest.h>

// Tests that need an application object: the HTTP client waits in local event loops, and the database
// drivers are plugins found through it.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
