#include "tests/support/MailServer.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace velmo {

/// Made before any thread is.
const OwnTrust &trust()
{
    static const OwnTrust trust;
    return trust;
}

} // namespace velmo

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests))
        velmo::trust();
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
