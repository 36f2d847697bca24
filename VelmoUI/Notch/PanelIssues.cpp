#include "VelmoUI/Notch/PanelIssues.h"

#include "VelmoUI/App/AppServices.h"

#include <utility>

namespace velmo {

namespace {

/// The stores whose issues wait for the user.
void forEachStore(AppServices &services, auto &&body)
{
    body(services.timers);
    body(services.clipboard);
    body(services.shelf);
}

QString returnFailure(int count)
{
    return count == 1 ? QStringLiteral("Mesa: 1 arquivo não pôde voltar à pasta de origem e "
                                       "continua na Mesa.")
                      : QStringLiteral("Mesa: %1 arquivos não puderam voltar à pasta de origem e "
                                       "continuam na Mesa.")
                            .arg(count);
}

} // namespace

PanelIssues::PanelIssues(AppServices &services) : m_services(services)
{
    forEachStore(services, [this](auto &store) {
        using Store = std::remove_reference_t<decltype(store)>;
        connect(&store, &Store::issuesChanged, this, &PanelIssues::update);
    });
    update();
}

void PanelIssues::dismiss()
{
    forEachStore(m_services, [](auto &store) { store.dismissIssues(); });
}

void PanelIssues::update()
{
    QStringList texts;
    forEachStore(m_services, [&](const auto &store) {
        for (const auto &issue : {store.loadIssue(), store.lastSaveError()}) {
            if (issue && !texts.contains(*issue))
                texts.append(*issue);
        }
    });
    if (const auto count = m_services.shelf.lastReturnFailure())
        texts.append(returnFailure(*count));
    if (std::exchange(m_texts, texts) != texts)
        Q_EMIT changed();
}

} // namespace velmo
