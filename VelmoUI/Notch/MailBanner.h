#pragma once

#include "VelmoCore/Mail/MailMessage.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class NotchViewModel;
struct PanelServices;

/// The new message as a collapsed panel shows it, and what can be done with it there.
class MailBanner : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the panel's content")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString sender READ sender NOTIFY changed)
    Q_PROPERTY(QString subject READ subject NOTIFY changed)
    /// Empty where the user wants none.
    Q_PROPERTY(QString snippet READ snippet NOTIFY changed)
    Q_PROPERTY(QString code READ code NOTIFY changed)
    /// Where the sign-in link leads to; empty without one.
    Q_PROPERTY(QString host READ host NOTIFY changed)
    Q_PROPERTY(QString more READ more NOTIFY changed) ///< "e mais 2"; empty without
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed)

public:
    MailBanner(NotchViewModel &model, const PanelServices &services);

    bool isShown() const;
    QString sender() const { return m_message.from.display(); }
    QString subject() const { return m_message.subject; }
    QString snippet() const;
    QString code() const { return m_message.code.value_or(QString()); }
    QString host() const { return m_message.signInLink ? m_message.signInLink->host() : QString(); }
    QString more() const;
    QString spoken() const;

    Q_INVOKABLE void copyCode();
    Q_INVOKABLE void openLink();
    /// Shows the message in the panel.
    Q_INVOKABLE void open();
    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void setHeld(bool isHeld);

Q_SIGNALS:
    void changed();

private:
    void update();

    NotchViewModel &m_model;
    const PanelServices &m_services;
    MailMessage m_message; ///< the last one, also while it fades out
    int m_moreCount = 0;
};

} // namespace velmo
