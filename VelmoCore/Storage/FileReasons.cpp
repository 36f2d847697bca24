#include "VelmoCore/Storage/FileReasons.h"

#include <cerrno>
#include <system_error>

namespace velmo {

QString FileReasons::text(int code)
{
    switch (code) {
    case EACCES:
        return QStringLiteral("sem permissão de acesso");
    case EPERM:
        return QStringLiteral("pertence a outro usuário ou está protegido");
    case ENOENT:
        return QStringLiteral("o item não existe");
    case ENOTDIR:
        return QStringLiteral("o caminho passa por algo que não é uma pasta");
    case EISDIR:
        return QStringLiteral("é uma pasta, e não um arquivo");
    case EEXIST:
    case ENOTEMPTY:
        return QStringLiteral("já existe um item com esse nome");
    case ENOSPC:
        return QStringLiteral("não há espaço livre no disco");
    case EDQUOT:
        return QStringLiteral("a cota de disco do usuário acabou");
    case EFBIG:
        return QStringLiteral("o arquivo é grande demais");
    case EROFS:
        return QStringLiteral("o disco só permite leitura");
    case EIO:
        return QStringLiteral("o disco não pôde ser lido ou gravado");
    case EMFILE:
    case ENFILE:
        return QStringLiteral("há arquivos abertos demais");
    case ENAMETOOLONG:
        return QStringLiteral("o nome é longo demais");
    case ELOOP:
        return QStringLiteral("os links simbólicos não levam a lugar nenhum");
    case EBUSY:
    case ETXTBSY:
        return QStringLiteral("o item está em uso");
    case EOPNOTSUPP:
        return QStringLiteral("não é um arquivo, uma pasta nem um link");
    case ENOMEM:
        return QStringLiteral("falta memória");
    default:
        return QStringLiteral("erro %1 do sistema (%2)")
            .arg(QString::number(code),
                 QString::fromStdString(std::generic_category().message(code)));
    }
}

} // namespace velmo
