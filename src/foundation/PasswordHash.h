#pragma once

#include <QString>

// Passwords are kept as salted PBKDF2-SHA256 hashes:
//   pbkdf2-sha256$<iterations>$<salt base64>$<hash base64>
// The comparison is exact: nothing is trimmed or case-folded.
namespace PasswordHash {

QString hash(const QString &password);
bool verify(const QString &password, const QString &stored);
// Spends the time of one verify() on nothing, so that an unknown user name
// takes as long to refuse as a wrong password.
void burnVerifyTime(const QString &password);

} // namespace PasswordHash
