#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoUI/Composition/ServiceWiring.h"
#include "VelmoUI/Notch/NotchContent.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QQuickItem>
#include <QtTest/QTest>

namespace velmo {
namespace {

class MailBannerTest : public PanelFixture {
protected:
    MailBannerTest()
    {
        addModules();
        ServiceWiring::start(services);
        services.isPanelOpen = [this] { return coordinator.isAnyPanelOpen(); };
        services.isPanelShown = [this] { return coordinator.isAnyPanelShown(); };
        services.openRoute = [this](const Route &route) { coordinator.open(route); };
        coordinator.start();
    }
    void arrive(const QString &subject, const std::optional<QString> &code = {})
    {
        MailMessage message;
        message.uid = ++count;
        message.date = desktop.scheduler.now();
        message.from.name = u"Bia"_qs;
        message.subject = subject;
        message.code = code;
        services.mail->onNewMail({message});
    }
    MailBanner &banner()
    {
        return *view().rootObject()->property("content").value<NotchContent *>()->mailBanner();
    }
    double height() { return status()["displays"][0]["shape"][3].toDouble(); }

    std::uint32_t count = 0;
};

TEST_F(MailBannerTest, IsANotificationWhereNoPanelShows)
{
    coordinator.setUserHidden(true);
    arrive(u"Acesso"_qs, u"482913"_qs);
    EXPECT_FALSE(banner().isShown());
    const NotificationServer::Notification expected{.title = u"Bia"_qs,
                                                    .body = u"Acesso\nCódigo: 482913"_qs,
                                                    .actions = {{u"copy"_qs, u"Copiar código"_qs}}};
    EXPECT_EQ(desktop.notifications.shown.at(u"mail"_qs), expected);
    Q_EMIT desktop.notifications.activated(u"mail"_qs, u"copy"_qs);
    EXPECT_EQ(desktop.pasteboard.written.text, u"482913");
    Q_EMIT desktop.notifications.activated(u"mail"_qs, {});
    EXPECT_EQ(status()["displays"][0]["module"].toString(), u"mail");
}

TEST_F(MailBannerTest, ShowsAMessageForAWhile)
{
    const double before = height();
    arrive(u"Oi"_qs);
    wait(2s);
    EXPECT_TRUE(banner().isShown());
    EXPECT_EQ(banner().spoken(), u"E-mail de Bia, Oi");
    EXPECT_GT(height(), before + 100);
    arrive(u"Acesso"_qs, u"482913"_qs);
    wait(MailBannerState::duration);
    EXPECT_EQ(banner().spoken(), u"E-mail de Bia, Acesso, código 482913") << "longer";
    banner().setHeld(true);
    wait(60s);
    EXPECT_TRUE(banner().isShown()) << "under the pointer";
    banner().setHeld(false);
    wait(MailBannerState::signInDuration);
    EXPECT_FALSE(banner().isShown());
    wait(2s);
    EXPECT_EQ(height(), before);
}

TEST_F(MailBannerTest, GivesWayToAnOpenPanel)
{
    arrive(u"Oi"_qs);
    coordinator.open();
    EXPECT_FALSE(banner().isShown());
    arrive(u"Oi"_qs);
    EXPECT_FALSE(banner().isShown());
}

TEST_F(MailBannerTest, CopiesACodeWithOnePress)
{
    arrive(u"Acesso"_qs, u"482913"_qs);
    wait(2s);
    showView();
    banner().copyCode();
    EXPECT_EQ(desktop.pasteboard.written,
              (Pasteboard::Contents{.text = u"482913"_qs, .isSecret = true}));
    EXPECT_FALSE(banner().isShown());
    EXPECT_EQ(status()["feedback"].toString(), u"Código copiado");
}

} // namespace
} // namespace velmo
