#include "VelmoSystem/Storage/StorageInspector.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

TEST(StorageInspector, CountsAllocatedBytesOfTheWholeTree)
{
    const TemporaryFolder folder;
    folder.write("tree/a", QByteArray(100'000, 'a'));
    const qint64 one = StorageInspector::size(folder.path("tree"));
    EXPECT_GE(one, 100'000);
    folder.write("tree/deep/.hidden/b", QByteArray(100'000, 'b'));
    folder.write("big", QByteArray(500'000, 'x'));
    QFile::link(folder.path("big"), folder.path("tree/link"));
    QFile::link(folder.path(), folder.path("tree/loop"));
    QFile sparse(folder.path("tree/sparse"));
    EXPECT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(1'000'000'000));
    EXPECT_EQ(StorageInspector::size(folder.path("tree")), 2 * one);
    EXPECT_EQ(StorageInspector::size(folder.path("absent")), 0);
    EXPECT_EQ(StorageInspector::size(folder.path("big")), 0);
}

TEST(StorageInspector, EmptiesAFolderAndNothingElse)
{
    const TemporaryFolder folder;
    folder.write("kept/file", "x");
    folder.write("cache/deep/file", "x");
    folder.write("cache/.hidden", "x");
    QFile::link(folder.path("kept"), folder.path("cache/link"));
    StorageInspector::clearContents(folder.path("cache"));
    EXPECT_TRUE(QDir(folder.path("cache")).isEmpty());
    EXPECT_EQ(folder.read("kept/file"), "x");
    EXPECT_NO_THROW(StorageInspector::clearContents(folder.path("absent")));
    EXPECT_THROW(StorageInspector::clearContents(folder.path("kept/file")), FileError);
}

} // namespace
} // namespace velmo
