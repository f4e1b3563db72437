// The cursor over a tuning file: loading, moving (with the deliberate skip of the first child),
// the node stack and attribute reading, on real files.
#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"
#include "tuning/TagIterator.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::TempDeviceRoot;

// Line 1 declaration; the root's first child is the line break before <a>.
const char* kWalkFile = R"(<?xml version="1.0"?>
<root>
    <a y="2" x="1" note="a&amp;b"/>
    <!-- a comment -->
    <b><c/><e/></b>
    <d>text</d>
    <f gain="-6"/>
    <g>
        <h/>
    </g>
</root>
)";

TEST(TagIterator, InitRefusesEmptyMissingAndMalformedFiles) {
    TempDeviceRoot root;
    LogCapture logs;
    TagIterator it;
    std::string empty;
    EXPECT_EQ(it.init(empty), -22);
    EXPECT_TRUE(logs.containsText("TagIterator", "Invalide xml file path, ")) << logs.dump();
    EXPECT_FALSE(it.isCurValid());

    std::string missing = root.path("none.xml");
    EXPECT_EQ(it.init(missing), -22);
    EXPECT_TRUE(logs.containsText("TagIterator", "fail to call xmlReadFile,  ")) << logs.dump();

    std::string broken = root.write("broken.xml", "<root><a></root>");
    logs.clear();
    EXPECT_EQ(it.init(broken), -22);
    ASSERT_EQ(logs.linesWithTag("TagIterator").size(), 1u) << logs.dump();
    EXPECT_EQ(logs.linesWithTag("TagIterator")[0].priority, ANDROID_LOG_ERROR);
    EXPECT_FALSE(it.isCurValid());
}

// A cursor on a freshly loaded kWalkFile.
class WalkFile : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(it.init(path), 0); }

    // Moves the cursor onto the next element of the given name.
    void moveTo(const std::string& name) {
        while (it.isCurValid() && !(it.isElementNode() && it.getNodeName() == name)) it.next();
        ASSERT_TRUE(it.isCurValid()) << name;
    }

    TempDeviceRoot root;
    std::string path = root.write("walk.xml", kWalkFile);
    TagIterator it;
};

TEST_F(WalkFile, StartsOnTheRootsFirstChildAndWalksSiblings) {
    // The root's first child is the whitespace text node, not the root and not <a>.
    ASSERT_TRUE(it.isCurValid());
    EXPECT_FALSE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "text");
    it.next();
    EXPECT_TRUE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "a");
    EXPECT_EQ(it.getLineNumber(), 3);
    EXPECT_FALSE(it.isChildrenValid());
    EXPECT_TRUE(it.isNextValid());
    it.next();  // whitespace
    it.next();  // comment
    EXPECT_TRUE(it.isCurValid());
    EXPECT_FALSE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "comment");

    // Walk to the end: past the last sibling the cursor is null and every test is false.
    int elements = 0;
    for (; it.isCurValid(); it.next()) elements += it.isElementNode();
    EXPECT_EQ(elements, 4);  // b, d, f, g
    EXPECT_FALSE(it.isNextValid());
    EXPECT_FALSE(it.isChildrenValid());
    EXPECT_FALSE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "");
    EXPECT_EQ(it.getLineNumber(), 0);
    it.next();
    it.childrenNext();
    EXPECT_FALSE(it.isCurValid());
}

// The node stack is last in, first out, and an empty pop only logs; childrenNext skips the
// first child node.
TEST_F(WalkFile, ChildrenNextSkipsTheFirstChildNodeAndPopReturns) {
    moveTo("a");
    it.pushNode();
    // Not indented: the first child element <c> is the one skipped, the cursor lands on <e>.
    moveTo("b");
    it.pushNode();
    it.childrenNext();
    EXPECT_EQ(it.getNodeName(), "e");
    LogCapture logs;
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "b");

    // Indented: the skipped node is the whitespace, the cursor lands on the first element.
    moveTo("g");
    it.pushNode();
    it.childrenNext();
    EXPECT_TRUE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "h");
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "g");
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "a");
    EXPECT_TRUE(logs.lines().empty()) << logs.dump();
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "a");
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"), 1u) << logs.dump();

    // Only one text child: there is no second child node, so the cursor becomes null.
    moveTo("d");
    EXPECT_TRUE(it.isChildrenValid());
    it.childrenNext();
    EXPECT_FALSE(it.isCurValid());

    // No children at all: the cursor stays on the element.
    ASSERT_EQ(it.init(path), 0);
    moveTo("f");
    EXPECT_FALSE(it.isChildrenValid());
    it.childrenNext();
    EXPECT_EQ(it.getNodeName(), "f");
}

TEST_F(WalkFile, ReadsAttributesInDocumentOrderOrByName) {
    // On a text node nothing is read and nothing is logged.
    LogCapture logs;
    std::vector<std::string> texts;
    it.parseNodeAll(texts);
    std::vector<int> numbers;
    it.parseNodeIntVector(numbers);
    EXPECT_TRUE(texts.empty());
    EXPECT_TRUE(numbers.empty());

    moveTo("a");
    it.parseNodeAll(texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"2", "1", "a&b"}));
    it.parseNodeIntVector(numbers);
    EXPECT_EQ(numbers, (std::vector<int>{2, 1, 0}));
    std::vector<std::string> named;
    it.parseNodeWithName({"x", "missing", "y"}, named);
    EXPECT_EQ(named, (std::vector<std::string>{"1", "", "2"}));
    EXPECT_TRUE(logs.lines().empty()) << logs.dump();

    // Without a current node every reader logs once and yields nothing.
    while (it.isCurValid()) it.next();
    named.clear();
    it.parseNodeWithName({"gain"}, named);
    it.parseNodeAll(named);
    it.parseNodeIntVector(numbers);
    EXPECT_TRUE(named.empty());
    EXPECT_EQ(numbers.size(), 3u);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TagIterator", "Invalid node when parsing String vector."), 3u)
        << logs.dump();
}

TEST_F(WalkFile, ClearAllAndANewLoadForgetTheDocumentAndItsPositions) {
    it.pushNode();
    it.clearAll();
    EXPECT_FALSE(it.isCurValid());
    LogCapture logs;
    it.popNode();  // the stack went with the document
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"), 1u);
    std::string flat = root.write("flat.xml", "<r><two/></r>");
    ASSERT_EQ(it.init(flat), 0);
    EXPECT_TRUE(it.isElementNode());  // not indented: the first child is the element itself
    EXPECT_EQ(it.getNodeName(), "two");

    // Loading over a loaded document replaces it and forgets the positions saved in the old one.
    it.pushNode();
    ASSERT_EQ(it.init(path), 0);
    it.popNode();
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"), 2u);
    EXPECT_EQ(it.getNodeName(), "text");
}

}  // namespace
}  // namespace korvi
