#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// The settings file of Baidu's input method; `genericData` is the user's folder for the data of programs.
QString speechInputIniPath(const QString &genericData, bool xpClass);

/// Its text with Ctrl as the hot key. Nothing for what is no INI text in UTF-8 or an 8-bit code.
std::optional<QByteArray> withCtrlHotKey(const QByteArray &ini);

/// Sees to it that the file at `path` has Ctrl as the hot key; one that has it is not written. The folder is
/// made where it is missing. False, and the file stays as it is, when it cannot be read or written.
bool configureSpeechInput(const QString &path);

} // namespace mevo
