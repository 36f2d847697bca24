#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/Mail/MailServices.h"

namespace velmo {

/// The inboxes of the user's mail accounts.
class MailModule : public NotchModule {
public:
    explicit MailModule(const MailServices &services);

    QString id() const override { return QStringLiteral("mail"); }
    QString title() const override { return QStringLiteral("E-mail"); }
    QString symbol() const override { return QStringLiteral("envelope.fill"); }
    View makeView(PanelPort &panel) override;
    std::optional<Offer> offer() override;
    std::vector<SettingsSection> settings() override;
    std::vector<Verb> verbs() override;
    QJsonValue status() const override;
    void start() override;

private:
    MailServices m_services;
};

} // namespace velmo
