#include "VelmoCore/Calendar/EventLine.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

const Date now = [] {
    qputenv("TZ", "America/Sao_Paulo");
    return dateFromISO8601(u"2026-11-20T18:00:37Z").value(); // Friday, 15:00 there
}();

/// "title | day hh:mm | minutes", or the problem.
QString reading(const QString &line)
{
    qputenv("TZ", "America/Sao_Paulo");
    const auto result = EventLines::read(line, now);
    if (const auto *problem = std::get_if<EventLineProblem>(&result))
        return QString::fromUtf8(Json::encode(*problem));
    const auto &event = std::get<EventLine>(result);
    return event.title + localDateTime(event.start).toString(u" | d/M HH:mm | "_qs) +
           QString::number(event.duration / 1min);
}

TEST(EventLines, FindsTheTimeAmongTheWords)
{
    const std::pair<const char *, const char *> cases[] = {
        {"Almoço com Ana amanhã 12h30 1h", "Almoço com Ana | 21/11 12:30 | 60"},
        {"ALMOCO COM ANA AMANHA 12:30", "ALMOCO COM ANA | 21/11 12:30 | 60"},
        {"amanhã, 14h: reunião (45 min)", "reunião | 21/11 14:00 | 45"},
        {"Reunião amanhã às 9 com João por 2 horas", "Reunião com João | 21/11 09:00 | 120"},
        {"Café da manhã amanhã 8h", "Café da manhã | 21/11 08:00 | 60"},
        {"Jantar sexta à noite às 8 e meia", "Jantar | 27/11 20:30 | 60"},
        {"Cinema hoje à noite 2h", "Cinema | 20/11 20:00 | 120"},
        {"Ver o jogo 16h", "Ver o jogo | 20/11 16:00 | 60"},
        {"Correr às 7 30min", "Correr | 21/11 07:00 | 30"},
        {"Dentista dia 25 das 14h às 15h", "Dentista | 25/11 14:00 | 60"},
        {"Aula 12h30-13h30 segunda-feira", "Aula | 23/11 12:30 | 60"},
        {"Aula 14:00 às 15:30", "Aula | 21/11 14:00 | 90"},
        {"Curso 25/12 14-15h30", "Curso | 25/12 14:00 | 90"},
        {"Festa sábado das 22h às 2h", "Festa | 21/11 22:00 | 240"},
        {"Festa 22h – meia-noite", "Festa | 20/11 22:00 | 120"},
        {"Feira domingo das 2 às 4 da tarde", "Feira | 22/11 14:00 | 120"},
        {"Plantão entre 19h e 7h", "Plantão | 20/11 19:00 | 720"},
        {"Sala 15 às 16h", "Sala 15 | 20/11 16:00 | 60"},
        {"Prova de 2h amanhã 14h", "Prova | 21/11 14:00 | 120"},
        {"Oficina 2h sábado 14h", "Oficina | 21/11 14:00 | 120"},
        {"Oficina sábado 14h 1h 30min", "Oficina | 21/11 14:00 | 90"},
        {"Reunião 16h 30min", "Reunião | 20/11 16:00 | 30"},
        {"Reunião 16h30min", "Reunião | 20/11 16:30 | 60"},
        {"Palestra terça 10h com duração de uma hora e meia", "Palestra | 24/11 10:00 | 90"},
        {"Live quinta 20hs 2 horas e 15 minutos", "Live | 26/11 20:00 | 135"},
        {"Ligar para Ana daqui a 20 min", "Ligar para Ana | 20/11 15:20 | 60"},
        {"Encontro em 20 de maio às 9h", "Encontro | 20/5 09:00 | 60"},
        {"Segunda via do RG amanhã 9h", "Segunda via do RG | 21/11 09:00 | 60"},
        {"Amanhã 9h plano da sexta", "plano da sexta | 21/11 09:00 | 60"},
        {"Revisar 1/2 da tese dia 1/12 às 10h", "Revisar 1/2 da tese | 1/12 10:00 | 60"},
        {"100 m rasos amanhã 10h", "100 m rasos | 21/11 10:00 | 60"},
        {"Reunião - amanhã 14h - sala 3", "Reunião - sala 3 | 21/11 14:00 | 60"},
        {"Almoço 12h 2 pessoas amanhã", "Almoço 2 pessoas | 21/11 12:00 | 60"},
        {"Aula 16h e 20h", "Aula e 20h | 20/11 16:00 | 60"},
        {"", R"("noTitle")"},
        {"amanhã 14h", R"("noTitle")"},
        {"Almoço com Ana", R"("noStart")"},
        {"Noite de jogos", R"("noStart")"},
        {"Café da manhã amanhã", R"("noTime")"},
        {"Reunião amanhã 25:00", R"("noTime")"},
        {"Aula 14h-13h", R"("endsBeforeStart")"},
    };
    for (const auto &[line, expected] : cases)
        EXPECT_EQ(reading(QString::fromUtf8(line)), QString::fromUtf8(expected)) << line;
    EXPECT_EQ(reading(u"9h "_qs.repeated(200)), u"\"tooLong\""_qs);
}

} // namespace
} // namespace velmo
