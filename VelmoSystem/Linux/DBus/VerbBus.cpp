#include "VelmoSystem/Linux/DBus/VerbBus.h"

#include "VelmoSystem/Control/VerbCheck.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"
#include "VelmoSystem/Linux/DBus/DBusValue.h"

#include <QJsonObject>
#include <QVariantMap>

#include <algorithm>

namespace velmo::VerbBus {

namespace {

using Kind = VerbArgument::Kind;
using Numbers = QList<uint>;
using Records = QList<QVariantMap>;

QString camelCase(const QString &name)
{
    QString result;
    for (const QString &word : name.split(u'-'))
        result += word.left(1).toUpper() + word.mid(1);
    return result;
}

QString type(const VerbArgument &argument)
{
    const bool isList = argument.isRepeated && argument.kind != Kind::text;
    return QLatin1String(isList ? "a" : "") +
           QLatin1String(argument.kind == Kind::number ? "u" : "s");
}

QString element(const QString &name, const QString &type, const QString &direction)
{
    return QStringLiteral("      <arg name=\"%1\" type=\"%2\"%3/>\n")
        .arg(name.toHtmlEscaped(), type,
             direction.isEmpty() ? QString() : QStringLiteral(" direction=\"%1\"").arg(direction));
}

QString methodElement(const VerbSyntax &verb)
{
    const auto in = QStringLiteral("in");
    const auto out = QStringLiteral("out");
    QString xml = QStringLiteral("    <method name=\"%1\">\n").arg(method(verb));
    for (const VerbArgument &argument : verb.arguments)
        xml += element(argument.name.toLower(), type(argument), in);
    if (takesOptions(verb))
        xml += element(QStringLiteral("options"), QStringLiteral("a{sv}"), in);
    xml += verb.lists() ? element(QStringLiteral("records"), QStringLiteral("aa{sv}"), out)
                        : element(QStringLiteral("text"), QStringLiteral("s"), out);
    return xml +
           QStringLiteral("      <annotation name=\"org.gtk.GDBus.DocString\" value=\"%1\"/>\n"
                          "    </method>\n")
               .arg(verb.summary.toHtmlEscaped());
}

QVariant encoded(const VerbArgument &argument, const QStringList &words)
{
    if (argument.kind == Kind::text || argument.kind == Kind::input)
        return text(argument.isRepeated ? words.join(u' ') : words.value(0));
    if (argument.kind == Kind::file)
        return argument.isRepeated ? QVariant(words) : QVariant(words.value(0));
    Numbers numbers;
    for (const QString &word : words)
        numbers.append(word.toUInt());
    return argument.isRepeated ? QVariant::fromValue(numbers) : QVariant(numbers.value(0));
}

/// None for an argument that is left out.
QStringList words(const VerbArgument &argument, const QVariant &value)
{
    QStringList words;
    if (value.metaType() == QMetaType::fromType<QStringList>()) {
        words = value.toStringList();
    } else if (const auto numbers = DBusValue::as<Numbers>(value)) {
        for (const uint number : *numbers)
            words.append(QString::number(number));
    } else {
        words.append(value.toString());
        const QString none = argument.kind == Kind::number ? QStringLiteral("0") : QString();
        if (argument.isOptional && words.first() == none)
            words.clear();
    }
    return words;
}

QVariant encoded(const QJsonValue &value);

QVariantMap encoded(const QJsonObject &object)
{
    QVariantMap map;
    for (auto field = object.begin(); field != object.end(); ++field) {
        if (!field.value().isNull())
            map.insert(field.key(), encoded(field.value()));
    }
    return map;
}

QVariant encoded(const QJsonValue &value)
{
    if (value.isString())
        return text(value.toString());
    if (value.isObject())
        return encoded(value.toObject());
    if (!value.isArray())
        return value.toVariant();
    QVariantList list;
    for (const QJsonValue &each : value.toArray()) {
        if (!each.isNull())
            list.append(encoded(each));
    }
    const bool areTexts = std::ranges::all_of(list, [](const QVariant &each) {
        return each.metaType() == QMetaType::fromType<QString>();
    });
    return areTexts ? QVariant(QVariant(list).toStringList()) : QVariant(list);
}

QJsonValue json(const QVariant &value)
{
    if (const auto map = DBusValue::as<QVariantMap>(value)) {
        QJsonObject object;
        for (auto field = map->begin(); field != map->end(); ++field)
            object.insert(field.key(), json(field.value()));
        return object;
    }
    if (const auto list = DBusValue::as<QVariantList>(value)) {
        QJsonArray array;
        for (const QVariant &each : *list)
            array.append(json(each));
        return array;
    }
    return QJsonValue::fromVariant(value);
}

/// Before the first use of its type.
void registerRecords()
{
    static const auto type = qDBusRegisterMetaType<Records>();
    Q_UNUSED(type)
}

QMetaType optionType(const VerbOption &option)
{
    if (option.value.isEmpty())
        return QMetaType::fromType<bool>();
    return option.kind == Kind::number ? QMetaType::fromType<uint>()
                                       : QMetaType::fromType<QString>();
}

VerbUsageError badOption(const QString &name)
{
    return VerbUsageError(QStringLiteral("A opção %1 é de outro tipo").arg(name));
}

} // namespace

QString path(const QString &noun)
{
    return ControlBus::path + u'/' + noun;
}

QString interface(const QString &noun)
{
    return ControlBus::service + u'.' + camelCase(noun);
}

QString method(const VerbSyntax &syntax)
{
    return syntax.name.isEmpty() ? QStringLiteral("List") : camelCase(syntax.name);
}

QString signature(const VerbSyntax &syntax)
{
    QString signature;
    for (const VerbArgument &argument : syntax.arguments)
        signature += type(argument);
    return takesOptions(syntax) ? signature + QStringLiteral("a{sv}") : signature;
}

QString introspection(const std::vector<VerbSyntax> &verbs)
{
    const QString none;
    QString xml = QStringLiteral("  <interface name=\"%1\">\n").arg(interface(verbs.front().noun));
    for (const VerbSyntax &verb : verbs)
        xml += methodElement(verb);
    if (std::ranges::any_of(verbs, &VerbSyntax::isLong))
        xml += QStringLiteral("    <method name=\"Cancel\">\n") +
               element(tokenOption, QStringLiteral("s"), QStringLiteral("in")) +
               QStringLiteral("    </method>\n    <signal name=\"Progress\">\n") +
               element(tokenOption, QStringLiteral("s"), none) +
               element(QStringLiteral("fraction"), QStringLiteral("d"), none) +
               element(QStringLiteral("text"), QStringLiteral("s"), none) +
               QStringLiteral("    </signal>\n");
    return xml + QStringLiteral("    <signal name=\"Changed\">\n") +
           element(QStringLiteral("what"), QStringLiteral("s"), none) +
           QStringLiteral("    </signal>\n  </interface>\n");
}

bool takesOptions(const VerbSyntax &syntax)
{
    return !syntax.options.empty() || syntax.isLong();
}

QVariantList encoded(const VerbSyntax &syntax, const VerbCall &call, const QString &token)
{
    QVariantList values;
    for (qsizetype place = 0; place < qsizetype(syntax.arguments.size()); ++place)
        values.append(encoded(syntax.arguments[std::size_t(place)], call.words.mid(place)));
    if (!takesOptions(syntax))
        return values;
    QVariantMap options;
    for (const auto &[name, value] : call.options) {
        const auto option = std::ranges::find(syntax.options, name, &VerbOption::name);
        QVariant sent = option->value.isEmpty() ? QVariant(true) : QVariant(text(value));
        sent.convert(optionType(*option));
        options.insert(name, sent);
    }
    if (!token.isEmpty())
        options.insert(tokenOption, token);
    values.append(options);
    return values;
}

Received received(const VerbSyntax &syntax, const QVariantList &arguments)
{
    Received result;
    bool isComplete = true;
    for (std::size_t place = 0; place < syntax.arguments.size(); ++place) {
        const QStringList given = words(syntax.arguments[place], arguments[qsizetype(place)]);
        if (!given.isEmpty() && !isComplete)
            throw VerbUsageError(QStringLiteral("Falta %1").arg(syntax.arguments[place - 1].name));
        isComplete = !given.isEmpty();
        result.call.words += given;
    }
    if (!takesOptions(syntax))
        return result;
    const auto options = DBusValue::as<QVariantMap>(arguments.last()).value_or(QVariantMap());
    for (auto option = options.begin(); option != options.end(); ++option) {
        const QVariant &value = option.value();
        const auto known = std::ranges::find(syntax.options, option.key(), &VerbOption::name);
        const bool isToken = syntax.isLong() && option.key() == tokenOption;
        const bool isFlag = known != syntax.options.end() && known->value.isEmpty();
        if (known != syntax.options.end() && value.metaType() != optionType(*known))
            throw badOption(option.key());
        if (isToken)
            result.token = value.toString();
        else if (!isFlag)
            result.call.options.emplace(option.key(), value.toString());
        else if (value.toBool())
            result.call.options.emplace(option.key(), QString());
    }
    return result;
}

QString text(QString text)
{
    return text.replace(QChar::Null, QChar::ReplacementCharacter);
}

QVariant encoded(const QJsonArray &records)
{
    registerRecords();
    Records list;
    for (const QJsonValue &record : records)
        list.append(encoded(record.toObject()));
    return QVariant::fromValue(list);
}

std::optional<QJsonArray> records(const QVariant &received)
{
    registerRecords();
    const auto list = DBusValue::as<Records>(received);
    if (!list)
        return std::nullopt;
    QJsonArray array;
    for (const QVariantMap &record : *list)
        array.append(json(record));
    return array;
}

} // namespace velmo::VerbBus
