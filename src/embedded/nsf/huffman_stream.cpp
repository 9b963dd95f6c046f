#include "embedded/nsf/huffman_stream.h"

#include <QtEndian>
#include <utility>
#include <vector>

namespace lens {
namespace {

constexpr qsizetype kBlockHead = 6, kTreeNode = 4;
constexpr int kEndSymbol = 256;
constexpr qsizetype kFeedPiece = 64 * 1024, kSinkPiece = 64 * 1024;

// Bytes and, within a byte, bits from the highest on.
class HuffmanInput {
 public:
  explicit HuffmanInput(const NsfFeed& feed) : feed_(feed) {}

  // Fewer at the end.
  QByteArray take(qsizetype count) {
    QByteArray bytes;
    bits_ = 0;
    while (bytes.size() < count && fill()) {
      const qsizetype some = qMin(count - bytes.size(), piece_.size() - at_);
      bytes.append(piece_.constData() + at_, some);
      at_ += some;
    }
    return bytes;
  }
  // -1 at the end.
  int bit() {
    if (bits_ == 0) {
      if (!fill()) return -1;
      byte_ = quint8(piece_[at_++]);
      bits_ = 8;
    }
    return byte_ >> --bits_ & 1;
  }

 private:
  bool fill() {
    if (at_ < piece_.size()) return true;
    piece_ = feed_(kFeedPiece);
    at_ = 0;
    return !piece_.isEmpty();
  }

  const NsfFeed& feed_;
  QByteArray piece_;
  qsizetype at_ = 0;
  int byte_ = 0, bits_ = 0;
};

class HuffmanOutput {
 public:
  HuffmanOutput(const NsfSink& sink, qint64 wanted) : sink_(sink), left_(wanted) {}

  qint64 left() const { return left_ - piece_.size(); }
  bool put(char byte) {
    piece_.append(byte);
    return piece_.size() < kSinkPiece || flush();
  }
  bool flush() {
    const bool taken = piece_.isEmpty() || sink_(piece_);
    left_ -= piece_.size();
    piece_.clear();
    return taken;
  }

 private:
  const NsfSink& sink_;
  qint64 left_;
  QByteArray piece_;
};

// What a step gives: below 0 the next node, a byte, or the end.
using HuffmanNode = std::pair<qint16, qint16>;  // for a bit 1 and for a bit 0

bool readTree(QByteArrayView bytes, std::vector<HuffmanNode>& tree) {
  tree.clear();
  for (qsizetype at = 0; at + kTreeNode <= bytes.size(); at += kTreeNode)
    tree.emplace_back(qFromLittleEndian<qint16>(bytes.data() + at),
                      qFromLittleEndian<qint16>(bytes.data() + at + 2));
  return !tree.empty();
}

// -1 where the codes end or lead out of the tree.
int nextSymbol(HuffmanInput& input, const std::vector<HuffmanNode>& tree) {
  size_t node = 0;
  while (true) {
    const int bit = input.bit();
    if (bit < 0) return -1;
    const int step = bit ? tree[node].first : tree[node].second;
    if (step >= 0) return step > kEndSymbol ? -1 : step;
    node = size_t(-step);
    if (node >= tree.size()) return -1;
  }
}

QString inflateCodes(HuffmanInput& input, const std::vector<HuffmanNode>& tree, quint16 sum,
                     HuffmanOutput& output) {
  quint16 found = 0;
  while (true) {
    const int symbol = nextSymbol(input, tree);
    if (symbol < 0) return QStringLiteral("its packed bytes are damaged");
    if (symbol == kEndSymbol) break;
    if (output.left() == 0) return QStringLiteral("it is longer than it should be");
    found = quint16(found + symbol);
    if (!output.put(char(symbol))) return QStringLiteral("it could not be written");
  }
  return found == sum ? QString() : QStringLiteral("the sum of its bytes is wrong");
}

}  // namespace

QString inflateHuffman(const NsfFeed& packed, qint64 wanted, const NsfSink& sink) {
  HuffmanInput input(packed);
  HuffmanOutput output(sink, wanted);
  std::vector<HuffmanNode> tree;
  // A large file may consist of several blocks, each with its own tree and sum.
  do {
    const QByteArray head = input.take(kBlockHead);
    if (head.isEmpty() && output.left() == 0) break;
    if (head.size() < kBlockHead) return QStringLiteral("it is shorter than it should be");
    const quint16 sum = qFromLittleEndian<quint16>(head.constData());
    const quint16 treeSize = qFromLittleEndian<quint16>(head.constData() + 4);
    const QByteArray treeBytes = input.take(treeSize);
    if (treeBytes.size() < treeSize || treeSize % kTreeNode != 0 || !readTree(treeBytes, tree))
      return QStringLiteral("its table of codes is damaged");
    const QString fault = inflateCodes(input, tree, sum, output);
    if (!fault.isEmpty()) return fault;
  } while (output.left() > 0);
  return output.flush() ? QString() : QStringLiteral("it could not be written");
}

}  // namespace lens
