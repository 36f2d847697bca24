#include "VelmoSystem/Linux/Device/ProcMachineLoad.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <thread>

namespace velmo {

TEST(ProcMachineLoad, ReadsWhatTheKernelWritesAndNothingElse)
{
    const TemporaryFolder folder;
    const ProcMachineLoad load(folder.path());
    EXPECT_EQ(load.memory(), std::nullopt);
    EXPECT_EQ(load.processor(), std::nullopt);
    folder.write("meminfo",
                 "MemTotal:       16000 kB\nMemFree:  10 kB\nMemAvailable:    4000 kB\n");
    folder.write("loadavg", "1.50 0.75 0.10 2/345 6789\n");
    EXPECT_EQ(load.memory(), (MachineLoad::Memory{12'000 * 1024, 16'000 * 1024}));
    EXPECT_DOUBLE_EQ(load.processor().value(), 1.5 / std::thread::hardware_concurrency());
    for (const char *text : {"", "MemTotal: 16000 kB\n", "MemTotal: 1 kB\nMemAvailable: 2 kB\n",
                             "MemTotal: 99999999999999999999 kB\nMemAvailable: 2 kB\n"}) {
        folder.write("meminfo", text);
        EXPECT_EQ(load.memory(), std::nullopt) << text;
    }
    folder.write("loadavg", "nan");
    EXPECT_EQ(load.processor(), std::nullopt);
    EXPECT_GT(ProcMachineLoad().memory().value().used, 0);
    EXPECT_LE(load.storage().value().available, load.storage().value().total);
}

} // namespace velmo
