#include "tests/support/MailServer.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <optional>
#include <system_error>

namespace velmo {

std::optional<OwnTrust> ownTrust;

} // namespace velmo

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    try {
        if (!testing::GTEST_FLAG(list_tests))
            velmo::ownTrust.emplace(); // before any thread is made
    } catch (const std::system_error &error) {
        std::printf("No trust of our own here: %s\n", error.what());
    }
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
