#include <map>
#include <memory>
#include <queue>
#include <vector>

#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/maker/made_compression.h"

namespace lens::made {
namespace {

constexpr int kEnd = 256;

struct CodeNode {
  int symbol = -1;  // -1: a branch
  std::shared_ptr<CodeNode> one, zero;
};
using CodeTree = std::shared_ptr<CodeNode>;

CodeTree treeFor(QByteArrayView bytes) {
  std::map<int, qint64> counts{{kEnd, 1}};
  for (const char byte : bytes) ++counts[quint8(byte)];
  // A branch needs two ways, also where there is only the end.
  if (counts.size() == 1) counts[0] = 0;
  struct Weighed {
    qint64 weight;
    int order;
    CodeTree tree;
    bool operator>(const Weighed& other) const {
      return std::pair(weight, order) > std::pair(other.weight, other.order);
    }
  };
  std::priority_queue<Weighed, std::vector<Weighed>, std::greater<>> open;
  int order = 0;
  for (const auto& [symbol, count] : counts)
    open.push({count, order++, std::make_shared<CodeNode>(CodeNode{symbol, {}, {}})});
  while (open.size() > 1) {
    const Weighed first = open.top();
    open.pop();
    const Weighed second = open.top();
    open.pop();
    open.push({first.weight + second.weight, order++,
               std::make_shared<CodeNode>(CodeNode{-1, first.tree, second.tree})});
  }
  return open.top().tree;
}

// The branches in the order in which they are met, the root first.
std::vector<const CodeNode*> branchesOf(const CodeTree& root) {
  std::vector<const CodeNode*> branches{root.get()};
  for (size_t i = 0; i < branches.size(); ++i)
    for (const CodeTree& way : {branches[i]->one, branches[i]->zero})
      if (way->symbol < 0) branches.push_back(way.get());
  return branches;
}

void addTree(QByteArray& out, const std::vector<const CodeNode*>& branches) {
  std::map<const CodeNode*, int> numbers;
  for (size_t i = 0; i < branches.size(); ++i) numbers[branches[i]] = int(i);
  for (const CodeNode* branch : branches)
    for (const CodeTree& way : {branch->one, branch->zero})
      add16(out, quint32(way->symbol >= 0 ? way->symbol : -numbers[way.get()]));
}

using Code = std::vector<bool>;

void collectCodes(const CodeNode& node, Code& code, std::map<int, Code>& codes) {
  if (node.symbol >= 0) {
    codes[node.symbol] = code;
    return;
  }
  for (const bool one : {true, false}) {
    code.push_back(one);
    collectCodes(*(one ? node.one : node.zero), code, codes);
    code.pop_back();
  }
}

QByteArray frequencyBlock(QByteArrayView bytes) {
  quint32 sum = 0;
  for (const char byte : bytes) sum += quint8(byte);
  const CodeTree tree = treeFor(bytes);
  const std::vector<const CodeNode*> branches = branchesOf(tree);
  QByteArray out;
  add16(out, sum);
  add16(out, 2);
  add16(out, quint32(branches.size() * 4));
  addTree(out, branches);
  std::map<int, Code> codes;
  Code code;
  collectCodes(*tree, code, codes);
  int used = 0;
  const auto write = [&](int symbol) {
    for (const bool bit : codes[symbol]) {
      if (used % 8 == 0) out.append('\0');
      if (bit) out.back() = char(out.back() | 0x80 >> used % 8);
      ++used;
    }
  };
  for (const char byte : bytes) write(quint8(byte));
  write(kEnd);
  return out;
}

}  // namespace

QByteArray packedByFrequency(QByteArrayView bytes, int blocks) {
  QByteArray out;
  for (int block = 0; block < blocks; ++block) {
    const qsizetype begin = bytes.size() * block / blocks, end = bytes.size() * (block + 1) / blocks;
    out += frequencyBlock(bytes.sliced(begin, end - begin));
  }
  return out;
}

}  // namespace lens::made
