#include "tests/e2e/RoomTest.h"

#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Storage/DataCipher.h"

#include <QDateTime>

#include <X11/keysym.h>

namespace velmo {

TEST_F(RoomTest, HomeStartsTheFocus)
{
    enter("Início");
    click("Iniciar foco");
    EXPECT_TRUE(isLive("pomodoro"));
}

TEST_F(RoomTest, ToolsCompressAChosenFileAndTheActivityTellsOfIt)
{
    home.write("home/carta.txt", "x");
    enter("Ferramentas");
    const xcb_window_t panel = screen.focusedWindow();
    click("Escolher arquivos");
    ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != panel; }));
    type(home.path("home/carta.txt"));
    screen.typeKey(XK_Return);
    click("Compactar");
    place("Nome do arquivo compactado");
    screen.typeKey(XK_Return);
    EXPECT_TRUE(eventually([&] { return QFile::exists(home.path("home/carta.zip")); }));

    click("Atividade");
    place("carta.zip");
    click("Limpar");
    pause(500ms); // longer than a double click
    click("Apagar");
    EXPECT_TRUE(isGone("carta.zip"));
}

TEST_F(RoomTest, TheShelfFindsATextAndCopiesIt)
{
    const Date now{Seconds(double(QDateTime::currentSecsSinceEpoch()))};
    const auto text = [&](const QString &words) {
        return ShelfItem{
            .id = makeUuid(), .content = {ShelfItem::Text{words}}, .name = words, .added = now};
    };
    const ShelfStore::Snapshot kept{{text("outra coisa"), text("receita de bolo")}};
    home.write("data/Orvane/Shelf/shelf.json", Json::encode(kept));
    enter("Prateleira");
    click("Buscar na prateleira");
    type("bolo");
    EXPECT_TRUE(isGone("outra coisa"));
    screen.typeKey(XK_Return);
    click("receita de bolo");
    screen.typeKey(XK_c, {XK_Control_L});
    EXPECT_TRUE(eventually([&] {
        QProcess peer;
        peer.setProcessEnvironment(environment);
        peer.start(CLIPBOARD_PEER, {"read", "text"});
        peer.waitForFinished();
        return peer.readAll() == "receita de bolo\n";
    }));
}

TEST_F(RoomTest, NotesTakeATask)
{
    enter("Notas");
    click("Nova tarefa");
    type("comprar pao");
    screen.typeKey(XK_Return);
    place("comprar pao");
    const auto isKept = [&] {
        if (!QFile::exists(home.path("data/Orvane/notes.json")))
            return false;
        const DataCipher cipher(home.read("state/Orvane/app.velmo.Velmo.storage:data-key-v1"));
        const auto kept =
            Json::decode<NotesStore::Snapshot>(cipher.open(home.read("data/Orvane/notes.json")));
        return kept.tasks.size() == 1 && kept.tasks.front().title == "comprar pao";
    };
    EXPECT_TRUE(eventually(isKept));
}

TEST_F(RoomTest, TimersCountWhatIsTyped)
{
    enter("Timers");
    click("Duração");
    type("90");
    click("Nome do timer");
    type("massa");
    screen.typeKey(XK_Return);
    place("massa");
    EXPECT_TRUE(isLive("timers."));
}

TEST_F(RoomTest, TheSystemTellsOfTheMachine)
{
    enter("Sistema");
    for (const char *tile : {"Processador", "Memória"})
        EXPECT_TRUE(eventually([&] { return frame("shape").contains(place(tile)); })) << tile;
}

TEST_F(RoomTest, TheSettingsKeepWhatIsClicked)
{
    launch();
    ASSERT_TRUE(reader.findsApplication());
    EXPECT_EQ(run({"settings"}).exitCode, 0);
    click("Aparência");
    click("Grande");
    EXPECT_TRUE(eventually([&] {
        return home.read("data/Orvane/settings.json").contains("\"panelSize\": \"large\"");
    }));
}

} // namespace velmo
