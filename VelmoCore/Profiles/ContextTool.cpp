#include "VelmoCore/Profiles/ContextTool.h"

namespace velmo {

void JsonCoding<ContextTool>::write(JsonWriter &writer, ContextTool tool)
{
    JsonCases<ContextTool>::write(writer, tool);
}

ContextTool JsonCoding<ContextTool>::read(const boost::json::value &json)
{
    const QString word = JsonCoding<QString>::read(json);
    ContextTool tool;
    if (boost::describe::enum_from_string(word.toStdString().c_str(), tool))
        return tool;
    if (word == u"recipes")
        return ContextTool::finderActions;
    throw JsonError(QStringLiteral("Ferramenta desconhecida: %1").arg(word));
}

} // namespace velmo
