#include "VelmoCore/Permissions/PermissionKind.h"

#include "VelmoCore/Foundation/PlatformNames.h"

namespace velmo {

PermissionTexts Permissions::texts(PermissionKind kind)
{
    switch (kind) {
    case PermissionKind::notifications:
        return {QStringLiteral("Notificações"), QStringLiteral("bell.badge"),
                QStringLiteral("Avisar quando timers, operações com arquivos ou lembretes "
                               "terminarem, mesmo com o notch recolhido."),
                QStringLiteral("Avisos do sistema")};
    case PermissionKind::calendar:
        return {QStringLiteral("Calendário"), QStringLiteral("calendar"),
                QStringLiteral("Mostrar e criar compromissos, contagem regressiva e links de "
                               "reunião."),
                QStringLiteral("Agenda")};
    case PermissionKind::reminders:
        return {QStringLiteral("Lembretes"), QStringLiteral("checklist"),
                QStringLiteral("Sincronizar tarefas com o app Lembretes, se você quiser."),
                QStringLiteral("Tarefas (integração com o app Lembretes)")};
    case PermissionKind::camera:
        return {QStringLiteral("Câmera"), QStringLiteral("camera"),
                QStringLiteral("Prévia rápida da câmera e fotos. A câmera é desligada assim que o "
                               "módulo é fechado."),
                QStringLiteral("Câmera")};
    case PermissionKind::microphone:
        return {QStringLiteral("Microfone"), QStringLiteral("mic"),
                QStringLiteral("Áudio do microfone, se você ativar essa opção nas gravações de "
                               "tela."),
                QStringLiteral("Gravação de tela")};
    case PermissionKind::screenRecording:
        return {QStringLiteral("Gravação de tela"), QStringLiteral("rectangle.dashed.badge.record"),
                QStringLiteral("Capturas de tela e gravações iniciadas por você. Nada é capturado "
                               "em segundo plano."),
                QStringLiteral("Screenshot, gravação e OCR")};
    case PermissionKind::accessibility:
        return {QStringLiteral("Acessibilidade"), QStringLiteral("accessibility"),
                QStringLiteral("Receber as teclas de volume para mostrar o volume no notch no "
                               "lugar do indicador do %1. Só é pedida se você ativar essa opção.")
                    .arg(QStringView(PlatformNames::system)),
                QStringLiteral("Indicador de volume (opcional)")};
    case PermissionKind::automation:
        return {QStringLiteral("Automação"), QStringLiteral("gearshape.2"),
                QStringLiteral("Controlar Música e Spotify (tocar, pausar, avançar) e ler a capa. "
                               "Pedida por player no primeiro controle."),
                QStringLiteral("Música e mídia")};
    case PermissionKind::bluetooth:
        return {QStringLiteral("Bluetooth"), QStringLiteral("dot.radiowaves.left.and.right"),
                QStringLiteral("Mostrar se o Bluetooth está ligado. Pedida apenas ao tocar em "
                               "“Verificar” no módulo Sistema."),
                QStringLiteral("Sistema")};
    }
    Q_UNREACHABLE();
}

} // namespace velmo
