#include "VelmoSystem/Permissions/PermissionsCenter.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QPointer>

namespace velmo {

PermissionsCenter::PermissionsCenter(PermissionSource &source) : m_source(source)
{
}

PermissionStatus PermissionsCenter::status(PermissionKind kind) const
{
    const auto kept = m_statuses.find(kind);
    return kept == m_statuses.end() ? PermissionStatus() : kept->second;
}

void PermissionsCenter::refreshAll()
{
    for (const PermissionKind kind : Permissions::all)
        refresh(kind);
}

void PermissionsCenter::refresh(PermissionKind kind)
{
    m_source.read(kind, keeper(kind));
}

void PermissionsCenter::request(PermissionKind kind)
{
    m_source.request(kind, keeper(kind));
}

std::optional<QString> PermissionsCenter::openSettings(PermissionKind kind)
{
    try {
        m_source.openSettings(kind);
        return std::nullopt;
    } catch (const LocalizedError &error) {
        return error.description();
    }
}

PermissionSource::Answer PermissionsCenter::keeper(PermissionKind kind)
{
    return [self = QPointer(this), kind](const PermissionStatus &status) {
        if (self)
            self->keep(kind, status);
    };
}

void PermissionsCenter::keep(PermissionKind kind, const PermissionStatus &status)
{
    const bool isNews = status != this->status(kind);
    m_statuses.insert_or_assign(kind, status);
    if (isNews)
        Q_EMIT changed();
}

} // namespace velmo
