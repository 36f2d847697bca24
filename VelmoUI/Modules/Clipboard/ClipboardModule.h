#pragma once

#include "VelmoUI/Modules/Clipboard/ClipboardServices.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

class Applications;

/// The history of what was copied.
class ClipboardModule : public NotchModule {
public:
    ClipboardModule(const ClipboardServices &services, Applications &applications);

    QString id() const override { return QStringLiteral("clipboard"); }
    QString title() const override { return QStringLiteral("Clipboard"); }
    QString symbol() const override { return QStringLiteral("doc.on.clipboard"); }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::vector<SettingsSection> settings() override;
    std::map<HotKeyAction, Route> hotKeys() const override;
    std::vector<Verb> verbs() override;
    void prepare(QQmlEngine &engine) override;
    void start() override;

private:
    void applySettings();

    const ClipboardServices m_services;
    Applications &m_applications;
    SettingsStore::Observation m_observation;
};

} // namespace velmo
