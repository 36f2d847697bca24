#include "VelmoUI/Modules/Mail/MailModule.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/Verbs/MailVerbs.h"
#include "VelmoUI/Modules/Mail/MailAccountsModel.h"
#include "VelmoUI/Modules/Mail/MailPageModel.h"
#include "VelmoUI/Modules/Mail/SignInsModel.h"

#include <QJsonArray>

namespace velmo {

namespace {

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Mail/") + QLatin1String(name));
}

} // namespace

MailModule::MailModule(const MailServices &services) : m_services(services)
{
    MailVerbs::connectChanges(services.mail, this, contentListener());
    connect(&services.mail, &MailService::signInsChanged, this, &NotchModule::cardsChanged);
}

NotchModule::View MailModule::makeView(PanelPort &panel)
{
    return {qml("MailPage.qml"), std::make_unique<MailPageModel>(m_services, panel)};
}

std::optional<NotchModule::Offer> MailModule::offer()
{
    constexpr double width = 250;
    return Offer{
        .title = QStringLiteral("Entrar"),
        .width = width,
        .make = [this](PanelPort &) -> View {
            return {qml("SignInsCard.qml"), std::make_unique<SignInsModel>(m_services)};
        },
        .isShown =
            [this] { return !m_services.mail.recentSignIns(m_services.scheduler.now()).empty(); }};
}

std::vector<NotchModule::SettingsSection> MailModule::settings()
{
    return {{.pane = SettingsPane::modules, .source = qml("MailSettings.qml"), .make = [this] {
                 return std::make_unique<MailAccountsModel>(m_services.mail, m_services.fileViewer);
             }}};
}

std::vector<Verb> MailModule::verbs()
{
    return MailVerbs::make(m_services.mail, m_services.scheduler);
}

QJsonValue MailModule::status() const
{
    return MailVerbs::status(m_services.mail);
}

void MailModule::start()
{
    m_services.mail.onError = [this](const QString &text) {
        m_services.activity.post(ActivityEvent::make(
            m_services.scheduler.now(), QStringLiteral("envelope.badge.shield.half.filled"),
            QStringLiteral("E-mail: não deu certo"), FeedbackStyle::error, QStringLiteral("mail"),
            text));
    };
    m_services.mail.start();
}

} // namespace velmo
