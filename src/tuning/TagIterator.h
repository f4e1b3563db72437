// A small cursor over one parsed tuning file. The parser and the value setters read the file only
// through it: it keeps a current node, moves to siblings and children, remembers positions on a
// stack and reads an element's attributes as text or integers.
//
// Moving into an element's children always skips its first child node: in an indented file that
// node is the whitespace before the first child element, so the cursor lands on that element.
// A file that is not indented therefore loses the first child element of every element.
//
// Files a tuning file never looks like are refused before anything is read from them: a file
// larger than kMaxFileBytes, and a file that declares entities (a few hundred kilobytes of
// entity references can expand to gigabytes when attributes are read).
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

// The integer readers belong to this module's interface: setters and the parser convert
// attribute texts with string2Int and string2IntVector.
#include "common/IntText.h"

// The XML library's own types, named here so that includers do not see the library.
struct _xmlDoc;
struct _xmlNode;

namespace korvi {

class TagIterator {
public:
    static constexpr long long kMaxFileBytes = 4LL * 1024 * 1024;

    TagIterator();
    // Frees the document. The XML library's global state is left alone: other parsers, on other
    // threads or elsewhere in the process, may be using it.
    virtual ~TagIterator();
    TagIterator(const TagIterator&) = delete;
    TagIterator& operator=(const TagIterator&) = delete;

    // Loads the file and moves to the first child node of its root element. Returns 0, -22 for an
    // empty path or an unreadable, malformed, oversized or entity-declaring file, -19 for a
    // document without a root element.
    // A document loaded before is released and the node stack emptied.
    virtual int32_t init(std::string& path);
    // To the next sibling (null past the last one); nothing when there is no current node.
    virtual void next();
    // To the second child node of the current node, which is its first child element in an
    // indented file; stays put when the current node has no children.
    virtual void childrenNext();
    virtual bool isChildrenValid();
    virtual bool isNextValid();
    virtual bool isCurValid();
    virtual bool isElementNode();
    virtual void pushNode();
    // Back to the last pushed node; on an empty stack logs and leaves the current node as it is.
    virtual void popNode();
    // The current node's name, "" without a current node or name.
    virtual std::string getNodeName();
    // Appends every attribute of the current element, in document order, read as one integer.
    virtual void parseNodeIntVector(std::vector<int>& out);
    // Appends the value of every attribute of the current element, in document order.
    virtual void parseNodeAll(std::vector<std::string>& out);
    // With names: out gets (at least) names.size() entries and out[i] the value of the attribute
    // names[i], "" when the element lacks it. Without names: as parseNodeAll.
    virtual void parseNodeWithName(const std::vector<std::string>& names,
                                   std::vector<std::string>& out);

    // Releases the document and forgets every position.
    void clearAll();

    // The source line of the current node, 0 without one. For tools that point a tuning author
    // at an element.
    long getLineNumber() const;

private:
    struct DocFree {
        void operator()(_xmlDoc* doc) const;
    };

    std::unique_ptr<_xmlDoc, DocFree> mDoc;
    _xmlNode* mRoot = nullptr;
    _xmlNode* mCurrent = nullptr;
    std::deque<_xmlNode*> mNodeStack;
};

}  // namespace korvi
