#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "AttributeSet.h"
#include "KestrumCritSec.h"
#include "KestrumObject.h"
#include "StringBuffer.h"
#include "ValidityWord.h"

class TreeNode;

using ExtPtrArraySb = std::vector<std::unique_ptr<StringBuffer>>;

/// One document: owns all nodes of its tree and holds what stands outside the root element. Its
/// critical section is the lock of the tree: whoever shares a tree between threads holds it for
/// each look at a node.
class TreeInfo : public KestrumObject, public KestrumCritSec {
 public:
  TreeInfo();
  /// Releases all nodes, without recursion and without a need for memory.
  ~TreeInfo() override;

  bool isValid() const { return m_validMark.isAlive(); }

  std::uint8_t m_emitBom = 0;      ///< for a writer, kept when a document is loaded again
  std::uint8_t m_emitCompact = 0;  ///< the same
  TreeNode* m_root = nullptr;
  AttributeSet m_docAttrs;       ///< of the XML declaration
  ExtPtrArraySb m_styleSheets;   ///< each xml-stylesheet instruction
  StringBuffer m_prologPIs;      ///< other processing instructions, each with a line feed
  StringBuffer m_docType;        ///< document type declaration, with a line feed
  const std::uint32_t m_treeId;  ///< number of this tree in the process
  std::int32_t m_refCount = 0;   ///< cursors on all nodes of the tree

 private:
  void deleteTreeNodes() noexcept;

  ValidityWord<std::uint8_t, 0xCE, 0x31> m_validMark;
};
