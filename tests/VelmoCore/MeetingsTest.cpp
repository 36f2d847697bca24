#include "VelmoCore/Calendar/CalendarEvent.h"
#include "VelmoCore/Calendar/WebMeetingTracker.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

using namespace WebMeetingTracker;

std::optional<MeetingLink> linkIn(const QString &text)
{
    return MeetingLinks::first({std::nullopt, QString(), text});
}

TEST(MeetingLinks, FindsTheAddressInTheSentence)
{
    struct Case {
        const char *text;
        MeetingProvider provider;
        const char *address;
    };
    using enum MeetingProvider;
    const Case cases[] = {
        {"Entrar: <https://meet.google.com/abc-defg-hij?authuser=0&hs=1>", googleMeet,
         "https://meet.google.com/abc-defg-hij?authuser=0&hs=1"},
        {"(https://us02web.zoom.us/j/81234?pwd=aB.1).", zoom,
         "https://us02web.zoom.us/j/81234?pwd=aB.1"},
        {"HTTPS://ZOOM.US/my/ana\u00A0agora", zoom, "https://zoom.us/my/ana"},
        {"<a href=\"https://teams.live.com/meet/93?p=x\">", teams,
         "https://teams.live.com/meet/93?p=x"},
        {"https://teams.microsoft.com/l/meetup-join/19%3ameeting_N%40thread.v2/"
         "0?context=%7b%22T%22%3a1%7d",
         teams,
         "https://teams.microsoft.com/l/meetup-join/19%3ameeting_N%40thread.v2/"
         "0?context=%7b%22T%22%3a1%7d"},
        {"sala https://acme.webex.com: entre", webex, "https://acme.webex.com"},
        {"https://x.webex.com.example/ e https://acme.webex.com/meet/ana;", webex,
         "https://acme.webex.com/meet/ana"},
        {"https://facetime.apple.com/join#v=1&p=x", facetime,
         "https://facetime.apple.com/join#v=1&p=x"},
        {"https://zoom.us/j/1 https://meet.google.com/abc-defg-hij", googleMeet,
         "https://meet.google.com/abc-defg-hij"},
    };
    for (const auto &[text, provider, address] : cases)
        EXPECT_EQ(linkIn(QString::fromUtf8(text)),
                  (MeetingLink{provider, QUrl(QString::fromUtf8(address))}))
            << text;
    for (const char *text :
         {"http://zoom.us/j/1", "https://evilzoom.us/j/1", "https://zoom.us/pricing",
          "https://meet.google.com/landing", "https://a.webex.com@evil.example/",
          "https://webex.com/x", "https://zoomgov.com/j/1", "zoom.us/j/1"})
        EXPECT_EQ(linkIn(QString::fromUtf8(text)), std::nullopt) << text;
    EXPECT_EQ(
        MeetingLinks::first({u"https://zoom.us/j/1"_qs, u"https://meet.google.com/abc-defg-hij"_qs})
            ->provider,
        MeetingProvider::zoom);
    for (const QString &piece :
         {u"https://"_qs, u"https://a"_qs, u"https://a.webex.com@"_qs, u"a"_qs})
        EXPECT_EQ(linkIn(u"https://"_qs + piece.repeated(2'000'000 / piece.size())), std::nullopt);
}

TEST(CalendarEvent, HappensUpToItsEnd)
{
    const Date start{1000s};
    const CalendarEvent event{.start = start, .end = start + 60s, .meeting = {}};
    EXPECT_TRUE(event.isHappening(start) && event.isHappening(start + 59s));
    EXPECT_FALSE(event.isHappening(start - 1s) || event.isHappening(start + event.duration()));
}

TEST(WebMeeting, ReadsTheTitleOfAWindow)
{
    using enum WebMeetingService;
    const std::tuple<const char *, WebMeetingService, const char *> cases[] = {
        {" Meet - abc-defg-hij ", meet, "abc-defg-hij"},
        {"ABC-defg-hij · Google Meet", meet, "abc-defg-hij"},
        {"Reunião semanal | Microsoft Teams", teams, "Reunião semanal"},
        {"Chamada - Microsoft Teams | Microsoft Teams", teams, "Chamada"},
        {"Llamada con Ana | Microsoft Teams - Microsoft Teams", teams,
         "Llamada con Ana | Microsoft Teams"},
        {"Zoom Meeting", zoom, "Zoom Meeting"},
        {"REUNIÃO DE ZOOM | Zoom - Zoom", zoom, "REUNIÃO DE ZOOM"},
        {"us02web.zoom.us/wc/1", zoom, "us02web.zoom.us/wc/1"},
    };
    for (const auto &[title, service, name] : cases)
        EXPECT_EQ(WebMeeting::fromTitle(QString::fromUtf8(title)),
                  (WebMeeting{service, QString::fromUtf8(name)}))
            << title;
    for (const char *title :
         {"", "abc-defg-hij", "Meet", "Meet abc-defg-hijk", "Documento abc-defg-hij google",
          "Chat | Microsoft Teams", "Zoom", "Reunião"})
        EXPECT_EQ(WebMeeting::fromTitle(QString::fromUtf8(title)), std::nullopt) << title;
}

TEST(WebMeetingTracker, FollowsACallThroughPausesAndReturns)
{
    const Date now{1'000'000s};
    const WebMeeting ana{WebMeetingService::zoom, u"Ana"_qs};
    const WebMeeting bia{WebMeetingService::zoom, u"Bia"_qs};
    const Session running{ana, now - 1h, now - 5s};
    const Session quiet{ana, now - 1h, now - 20s};
    const Session silent{ana, now - 1h, now - 21s};
    const Session over{ana, now - 1h, now - 21s, true};
    const Session recent{ana, now - 1h, now - 599s, true};
    const Session old{ana, now - 1h, now - 600s, true};
    const Session kept{ana, now - 1h, now};
    const Session fresh{ana, now, now};
    struct Case {
        const char *name;
        Signal signal;
        std::optional<Session> session;
        std::optional<WebMeeting> dismissed;
        Decision decision;
    };
    const Case cases[] = {
        {"first", {ana, {}, true}, {}, {}, Start{fresh}},
        {"device off", {ana, {}, false}, {}, {}, None{}},
        {"goes on", {ana, {}, true}, running, {}, Keep{kept}},
        {"goes on behind", {{}, ana, true}, running, {}, Keep{kept}},
        {"not seen for hours, never ended",
         {ana, {}, true},
         Session{ana, now - 1h, now - 50min},
         {},
         Keep{kept}},
        {"another call in front", {bia, ana, true}, running, {}, Start{Session{bia, now, now}}},
        {"short pause", {ana, {}, false}, quiet, {}, None{}},
        {"long pause", {ana, {}, false}, silent, {}, Finish{over}},
        {"ended once", {}, over, {}, None{}},
        {"back soon", {ana, {}, true}, recent, {}, Keep{kept}},
        {"back late", {ana, {}, true}, old, {}, Start{fresh}},
        {"dismissed", {ana, {}, true}, {}, ana, None{}},
        {"dismissed in front", {ana, bia, true}, {}, ana, None{}},
        {"dismissed while it runs", {ana, {}, true}, silent, ana, Finish{over}},
        {"another than the dismissed", {bia, {}, true}, {}, ana, Start{Session{bia, now, now}}},
    };
    for (const auto &[name, signal, session, dismissed, decision] : cases)
        EXPECT_EQ(decide(signal, session, dismissed, now), decision) << name;
}

} // namespace
} // namespace velmo
