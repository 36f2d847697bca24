#pragma once

/// What the parts of this platform are called in the texts that the user reads.
namespace velmo::PlatformNames {

inline constexpr char16_t computer[] = u"computador";
inline constexpr char16_t system[] = u"sistema";
inline constexpr char16_t fileManager[] = u"gerenciador de arquivos";
inline constexpr char16_t showInFolder[] = u"Mostrar na pasta";
inline constexpr char16_t systemSettings[] = u"Configurações do sistema";
/// Where keys are kept: one of the two.
inline constexpr char16_t keyring[] = u"chaveiro";
inline constexpr char16_t privateFile[] = u"arquivo privado";

} // namespace velmo::PlatformNames
