#include "embedded/formula/functions/passwords.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <cmath>

#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

// Digests that stand in documents: "(" 32 hexadecimal digits ")", or "(S" salt and digest in hexadecimal
// digits ")".
constexpr qsizetype kSaltBytes = 8, kDigestBytes = 16;
constexpr int kRounds = 2000;
constexpr int kBestQuality = 16;

QString inParentheses(const QString& inner) {
  return u'(' + inner + u')';
}

QString plainDigest(QStringView password) {
  const QByteArray digest = QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5);
  return inParentheses(QString::fromLatin1(digest.toHex().toUpper()));
}

// Many rounds, so that guessing takes as many.
QString saltedDigest(QStringView password, const QByteArray& salt) {
  const QByteArray bytes = password.toUtf8();
  QByteArray digest = salt;
  for (int round = 0; round < kRounds; ++round)
    digest = QCryptographicHash::hash(digest + salt + bytes, QCryptographicHash::Sha256);
  return inParentheses(u'S' + QString::fromLatin1((salt + digest.first(kDigestBytes)).toHex().toUpper()));
}

QByteArray newSalt() {
  QByteArray salt(kSaltBytes, '\0');
  for (char& byte : salt) byte = char(QRandomGenerator::system()->bounded(256));
  return salt;
}

void chargeDigest(const Call& call, QStringView password) {
  call.charge(kRounds * (8 + password.size() / 16));
}

bool fits(const Call& call, QStringView password, QStringView digest) {
  constexpr qsizetype kSaltedSize = 3 + 2 * (kSaltBytes + kDigestBytes);
  if (digest.size() != kSaltedSize || !digest.startsWith(u"(S")) return plainDigest(password) == digest;
  chargeDigest(call, password);
  const QByteArray salt = QByteArray::fromHex(digest.sliced(2, 2 * kSaltBytes).toLatin1());
  return salt.size() == kSaltBytes && saltedDigest(password, salt) == digest;
}

// 0 to 16: bits that guessing by kinds of characters would take, four of them a point. A character that
// repeats the one before it, or follows it in the alphabet, counts for little.
int quality(QStringView password) {
  bool lower = false, upper = false, digit = false, other = false;
  double characters = 0;
  char32_t last = 0;
  for (qsizetype at = 0; at < password.size();) {
    const char32_t c = nextCharacter(password, at);
    lower |= QChar::isLower(c);
    upper |= QChar::isUpper(c);
    digit |= QChar::isDigit(c);
    other |= !QChar::isLetterOrNumber(c);
    characters += c == last || c == last + 1 ? 0.25 : 1;
    last = c;
  }
  const int alphabet = 26 * lower + 26 * upper + 10 * digit + 32 * other;
  const double bits = characters * std::log2(qMax(alphabet, 2));
  return int(qMin<double>(kBestQuality, bits / 4));
}

}  // namespace

Value hashPassword(const Call& call) {
  return mapViews(call, call[0], [&](QStringView text) {
    chargeDigest(call, text);
    return Text(saltedDigest(text, newSalt()));
  });
}

Value password(const Call& call) {
  return mapViews(call, call[0], [&](QStringView text) { return Text(plainDigest(text)); });
}

Value passwordQuality(const Call& call) {
  const Value& texts = call[0];
  ListBuilder result(Type::Number, texts.count());
  for (qsizetype i = 0; i < texts.count(); ++i) result.addNumber(quality(texts.text(i)));
  return result.take();
}

Value verifyPassword(const Call& call) {
  const Value &passwords = call[0], &digests = call[1];
  const qsizetype count = qMax(passwords.count(), digests.count());
  for (qsizetype i = 0; i < count; ++i) {
    const QStringView digest = digests.text(qMin(i, digests.count() - 1));
    if (!fits(call, passwords.text(qMin(i, passwords.count() - 1)), digest)) return Value::truth(false);
  }
  return Value::truth(true);
}

}  // namespace lens::formula
