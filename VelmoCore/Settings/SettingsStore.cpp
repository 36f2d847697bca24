#include "VelmoCore/Settings/SettingsStore.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Settings/SettingsCoder.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoCore/Storage/JSONFileStore.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <cerrno>

namespace velmo {
namespace {

/// The file's content, nothing where there is no file. Throws `FileError`.
std::optional<QByteArray> contentIfPresent(const QString &path)
{
    try {
        return AtomicFile::read(path);
    } catch (const FileError &error) {
        if (error.code() == ENOENT)
            return {};
        throw;
    }
}

QString corruptionIssue(const std::optional<QString> &copy)
{
    QString issue = QStringLiteral(
        "As configurações salvas estavam corrompidas e foram restauradas para o padrão.");
    if (copy)
        issue += QStringLiteral(" Cópia preservada em %1.").arg(QFileInfo(*copy).fileName());
    return issue;
}

} // namespace

SettingsStore::ImportError::ImportError()
    : LocalizedError(QStringLiteral("O arquivo não contém configurações válidas do Orvane."))
{
}

SettingsStore::SettingsStore(const QString &path, const DataFiles &files, Scheduler &scheduler,
                             Seconds saveDelay)
    : m_path(path), m_files(files), m_scheduler(scheduler), m_saveDelay(saveDelay)
{
    load();
    m_files.add(*this);
}

SettingsStore::~SettingsStore()
{
    m_files.remove(*this);
}

void SettingsStore::update(const std::function<void(AppSettings &)> &change)
{
    AppSettings settings = m_settings;
    change(settings);
    apply(settings);
}

void SettingsStore::resetToDefaults()
{
    AppSettings settings;
    settings.hasCompletedOnboarding = m_settings.hasCompletedOnboarding;
    apply(settings);
}

SettingsStore::Observation SettingsStore::observe(Observer observer)
{
    const auto observation = std::make_shared<const Observer>(std::move(observer));
    m_observers.push_back(observation);
    return observation;
}

void SettingsStore::flush()
{
    m_saveTask.cancel();
    if (!m_isUnsaved)
        return; // what stands there may be what couldn't be read, or a newer Orvane's
    if (std::exchange(m_isUnread, false))
        AtomicFile::quarantine(m_path, m_scheduler.now());
    try {
        exportTo(m_path);
        m_isUnsaved = false;
        setSaveError(std::nullopt);
    } catch (const FileError &error) {
        qCCritical(Log::settings).noquote()
            << "Falha ao salvar configurações:" << error.description();
        setSaveError(JSONFile::saveIssue(error, QStringLiteral("Ajustes"), std::nullopt));
    }
}

QStringList SettingsStore::issues() const
{
    QStringList issues;
    if (m_loadIssue && !m_isLoadIssueRead)
        issues.append(*m_loadIssue);
    if (m_lastSaveError)
        issues.append(*m_lastSaveError);
    return issues;
}

void SettingsStore::dismissIssues()
{
    m_isLoadIssueRead = true;
    m_lastSaveError.reset();
    m_files.notify();
}

void SettingsStore::exportTo(const QString &path) const
{
    AtomicFile::write(SettingsCoder::encode(m_settings), path);
}

StringList SettingsStore::importFrom(const QString &path)
{
    return importContent(AtomicFile::read(path));
}

StringList SettingsStore::importContent(const QByteArray &content)
{
    SettingsCoder::DecodeResult result = SettingsCoder::decode(content);
    if (result.wasUnreadable)
        throw ImportError();
    result.settings.hasCompletedOnboarding = m_settings.hasCompletedOnboarding;
    apply(result.settings);
    return result.discardedKeys;
}

void SettingsStore::load()
{
    AtomicFile::removeStrays(m_path);
    std::optional<QByteArray> content;
    try {
        content = contentIfPresent(m_path);
    } catch (const FileError &error) {
        qCCritical(Log::settings).noquote() << "Falha ao ler configurações:" << error.description();
        m_loadIssue = QStringLiteral("Não foi possível ler as configurações salvas.");
        m_isUnread = true;
    }
    if (!content)
        return;

    const SettingsCoder::DecodeResult result = SettingsCoder::decode(*content);
    m_settings = result.settings;
    if (result.wasUnreadable) {
        const std::optional<QString> copy = AtomicFile::quarantine(m_path, m_scheduler.now());
        qCCritical(Log::settings,
                   "Configurações ilegíveis; arquivo isolado e padrões restaurados.");
        m_loadIssue = corruptionIssue(copy);
        m_isUnread = !copy;
    } else if (!result.discardedKeys.empty()) {
        const QStringList keys(result.discardedKeys.begin(), result.discardedKeys.end());
        qCInfo(Log::settings).noquote()
            << "Campos inválidos descartados:" << keys.join(QStringLiteral(", "));
        m_loadIssue =
            QStringLiteral("Algumas preferências inválidas foram restauradas para o padrão.");
    }
}

void SettingsStore::apply(const AppSettings &settings)
{
    if (settings == m_settings)
        return;
    m_isUnsaved = true;
    m_unannounced.emplace_back(std::exchange(m_settings, settings), settings);
    if (!m_isAnnouncing)
        announceChanges();
    m_saveTask = m_scheduler.after(m_saveDelay, [this] { flush(); });
}

void SettingsStore::setSaveError(const std::optional<QString> &error)
{
    if (std::exchange(m_lastSaveError, error) != error)
        m_files.notify();
}

void SettingsStore::announceChanges()
{
    m_isAnnouncing = true;
    const auto finish = qScopeGuard([this] { m_isAnnouncing = false; });
    while (!m_unannounced.empty()) {
        const auto [before, after] = std::move(m_unannounced.front());
        m_unannounced.pop_front();
        announce(before, after);
    }
}

void SettingsStore::announce(const AppSettings &before, const AppSettings &after)
{
    std::erase_if(m_observers, [](const auto &observer) { return observer.expired(); });
    const auto observers = m_observers; // one may add others
    for (const auto &each : observers) {
        if (const auto observer = each.lock()) // else an earlier one ended it
            (*observer)(before, after);
    }
    Q_EMIT settingsChanged();
}

} // namespace velmo
