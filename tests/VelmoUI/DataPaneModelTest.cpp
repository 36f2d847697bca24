#include "VelmoUI/Settings/DataPaneModel.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

#include <functional>
#include <optional>
#include <thread>

namespace velmo {
namespace {

class DataPaneModelTest : public ServicesFixture {
protected:
    DataPaneModelTest() { services.paths.ensureExists(); }

    QString write(const QString &folder, const QByteArray &data)
    {
        QString path = QDir(folder).filePath(u"deep/file.json"_qs);
        AtomicFile::write(data, path);
        return path;
    }
    QString size(int row) { return field(pane->folders(), row, "size").toString(); }
    void wait(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
    }

    std::optional<DataPaneModel> pane{std::in_place, *services.settings, services.paths,
                                      desktop.fileViewer, desktop.scheduler};
};

TEST_F(DataPaneModelTest, ClearsCacheAndTemporaryFilesButNeverTheData)
{
    const QString data = write(services.paths.support, QByteArray(9000, 'x'));
    const QString cache = write(services.paths.caches, QByteArray(9000, 'x'));
    const QString temporary = write(services.paths.temporary, "{}");
    pane->refresh();
    EXPECT_EQ(size(0), u"Calculando…");
    wait([&] { return size(1) != u"Calculando…"; });
    EXPECT_EQ(size(1), StorageInspector::format(StorageInspector::size(services.paths.caches)));
    EXPECT_NE(size(1), u"0 KB");

    pane->clear();
    wait([&] { return !pane->isClearing() && size(1) == u"0 KB"; });
    EXPECT_EQ(pane->clearNote().text, u"Cache e temporários removidos.");
    EXPECT_TRUE(QFile::exists(data));
    EXPECT_FALSE(QFile::exists(cache) || QFile::exists(temporary));
    EXPECT_TRUE(QDir(services.paths.temporary).exists());
}

TEST_F(DataPaneModelTest, TellsWhyItCouldNotClear)
{
    QDir().rmdir(services.paths.temporary);
    const QString elsewhere = write(desktop.folder.path(u"elsewhere"_qs), "{}");
    QFile::link(desktop.folder.path(u"elsewhere"_qs), services.paths.temporary);
    pane->clear();
    wait([&] { return !pane->isClearing(); });
    EXPECT_TRUE(pane->clearNote().isError);
    EXPECT_TRUE(QFile::exists(elsewhere)) << "a link leads out of our folders";
}

TEST_F(DataPaneModelTest, MayCloseWhileThreadsAreAtWork)
{
    const QString cache = write(services.paths.caches, "{}");
    pane->refresh();
    pane->clear();
    pane.reset();
    desktop.scheduler.runPosted();
    EXPECT_FALSE(QFile::exists(cache));
}

TEST_F(DataPaneModelTest, ImportsWhatItExportedAndSaysWhatItDiscarded)
{
    const QString file = desktop.folder.path(u"Ajustes.json"_qs);
    change([](AppSettings &next) { next.closeDelay = 2s; });
    pane->exportTo(file);
    EXPECT_EQ(pane->fileNote().text, u"Ajustes exportados.");
    pane->resetSettings();
    EXPECT_EQ(settings().closeDelay, 0.5s);
    pane->importFrom(file);
    EXPECT_EQ(settings().closeDelay, 2s);
    EXPECT_EQ(pane->fileNote().text, u"Ajustes importados.");

    AtomicFile::write(R"({"theme":"neon","panelSize":"huge","closeDelay":1})", file);
    pane->importFrom(file);
    EXPECT_EQ(settings().closeDelay, 1s);
    EXPECT_EQ(pane->fileNote().text, u"Ajustes importados. Descartados: panelSize, theme.");
}

TEST_F(DataPaneModelTest, OffersANameForTheExport)
{
    pane->chooseExport();
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto window = std::ranges::find_if(
        windows, [](QWidget *each) { return qobject_cast<QFileDialog *>(each) != nullptr; });
    ASSERT_NE(window, windows.end());
    EXPECT_EQ(QFileInfo(qobject_cast<QFileDialog *>(*window)->selectedFiles().value(0)).fileName(),
              u"Orvane-configuracoes.json");
}

TEST_F(DataPaneModelTest, ChangesNothingForAForeignFile)
{
    const AppSettings before = settings();
    const QString file = write(desktop.folder.path(u"foreign"_qs), "[1,2]");
    pane->importFrom(file);
    EXPECT_EQ(pane->fileNote().text, u"O arquivo não contém configurações válidas do Orvane.");
    pane->importFrom(file + u'x');
    EXPECT_TRUE(pane->fileNote().isError);
    EXPECT_TRUE(settings() == before);
    pane->exportTo(file + u"/inside"_qs);
    EXPECT_TRUE(pane->fileNote().isError);
}

} // namespace
} // namespace velmo
