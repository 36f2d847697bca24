#include "VelmoUI/Modules/Frame/SettingsModel.h"

#include "VelmoCore/Settings/SettingsBounds.h"

#include <QJSValue>

#include <boost/mp11.hpp>

#include <cmath>
#include <limits>

namespace velmo {

namespace {

using Keys = boost::describe::describe_members<AppSettings, boost::describe::mod_public |
                                                                boost::describe::mod_inherited>;

/// What QML sees of a value; invalid for what it doesn't.
template <class Value>
QVariant shown(const Value &value)
{
    if constexpr (boost::describe::has_describe_enumerators<Value>::value)
        return QString::fromLatin1(boost::describe::enum_to_string(value, ""));
    else if constexpr (std::is_same_v<Value, Seconds>)
        return value.count();
    else if constexpr (std::is_same_v<Value, StringList>)
        return QStringList(value.begin(), value.end());
    else if constexpr (std::is_same_v<Value, bool> || std::is_same_v<Value, int> ||
                       std::is_same_v<Value, QString>)
        return value;
    else
        return {};
}

/// A number that an `int` holds; no duration is longer either.
bool isNumber(const QVariant &input)
{
    const bool isOne = input.typeId() == QMetaType::Double || input.typeId() == QMetaType::Int;
    return isOne && std::abs(input.toDouble()) <= std::numeric_limits<int>::max();
}

/// Takes what fits the value over; anything else leaves it.
template <class Value>
void take(const QVariant &input, Value &value)
{
    if constexpr (boost::describe::has_describe_enumerators<Value>::value) {
        boost::describe::enum_from_string(input.toString().toUtf8().constData(), value);
    } else if constexpr (std::is_same_v<Value, Seconds>) {
        if (isNumber(input))
            value = Seconds(input.toDouble());
    } else if constexpr (std::is_same_v<Value, StringList>) {
        if (input.typeId() == QMetaType::QStringList || input.typeId() == QMetaType::QVariantList) {
            const QStringList texts = input.toStringList();
            value.assign(texts.begin(), texts.end());
        }
    } else if constexpr (std::is_same_v<Value, bool>) {
        if (input.typeId() == QMetaType::Bool)
            value = input.toBool();
    } else if constexpr (std::is_same_v<Value, int>) {
        if (isNumber(input))
            value = input.toInt();
    } else if constexpr (std::is_same_v<Value, QString>) {
        if (input.typeId() == QMetaType::QString)
            value = input.toString();
    }
}

/// Calls `visit` with the name and the value of each key, and of each field of the pomodoro.
template <class Settings, class Visit>
void forEachKey(Settings &settings, const Visit &visit)
{
    boost::mp11::mp_for_each<Keys>(
        [&](auto member) { visit(QLatin1String(member.name), settings.*member.pointer); });
    using Fields = boost::describe::describe_members<PomodoroConfig, boost::describe::mod_public>;
    boost::mp11::mp_for_each<Fields>(
        [&](auto member) { visit(QLatin1String(member.name), settings.pomodoro.*member.pointer); });
}

} // namespace

SettingsModel::SettingsModel(SettingsStore &store)
    : QQmlPropertyMap(this, nullptr), m_store(store),
      m_observer(store.observe([this](const auto &, const AppSettings &after) { show(after); }))
{
    show(store.settings());
}

QVariantMap SettingsModel::bounds(const QString &key) const
{
    const auto bounds = SettingsBounds::of(key);
    if (!bounds)
        return {};
    return {{QStringLiteral("minimum"), bounds->minimum},
            {QStringLiteral("maximum"), bounds->maximum},
            {QStringLiteral("step"), bounds->step}};
}

QVariant SettingsModel::updateValue(const QString &key, const QVariant &input)
{
    const bool isScripts = input.metaType() == QMetaType::fromType<QJSValue>(); // as arrays are
    QVariant plain = isScripts ? input.value<QJSValue>().toVariant() : input;
    if (const auto bounds = SettingsBounds::of(key); bounds && isNumber(plain))
        plain = bounds->snap(plain.toDouble());
    m_store.update([&](AppSettings &settings) {
        forEachKey(settings, [&](QLatin1String name, auto &value) {
            if (key == name)
                take(plain, value);
        });
    });
    return value(key); // the store's, by now
}

void SettingsModel::show(const AppSettings &settings)
{
    forEachKey(settings, [&](QLatin1String name, const auto &setting) {
        const QVariant value = shown(setting);
        if (value.isValid())
            insert(name, value);
    });
}

} // namespace velmo
