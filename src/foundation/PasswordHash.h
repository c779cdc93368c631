#pragma once

#include <QString>

// Passwords are kept as salted PBKDF2-SHA256 hashes:
//   pbkdf2-sha256$<iterations>$<salt base64>$<hash base64>
// The comparison is exact: nothing is trimmed or case-folded.
namespace PasswordHash {

// The work of a new hash: current guidance for PBKDF2-SHA256.
inline constexpr int kIterations = 600000;

QString hash(const QString &password);
bool verify(const QString &password, const QString &stored);
// True when a stored hash was made with less work than a new one gets (or
// is no hash of ours): the next good log-on stores a new one.
bool needsUpgrade(const QString &stored);
// Spends the time of one verify() on nothing, so that an unknown user name
// takes as long to refuse as a wrong password.
void burnVerifyTime(const QString &password);

// Tests only: new hashes get this much work instead of kIterations, so that
// the hundreds of years the tests make do not each spend a second hashing.
// The program never calls it.
void setIterationsForTests(int iterations);

} // namespace PasswordHash
