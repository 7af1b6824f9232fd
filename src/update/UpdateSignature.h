#pragma once

#include <QByteArray>
#include <QString>

namespace mevo {

/// Whether `signature` (64 bytes, or those in base64) is an Ed25519 signature of the file's content by the
/// owner of `key` (32 bytes in base64). False for anything that cannot be read.
bool isSignedBy(const QString &path, const QByteArray &signature, const QString &key);

/// The SHA-256 of a file's content in lower-case hex; empty when it cannot be read.
QByteArray fileSha256(const QString &path);

constexpr int largestSignature = 1024; ///< bytes of a signature's file

} // namespace mevo
