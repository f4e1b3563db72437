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

    std::string missing = root.path("vendor/etc/korvi/none.xml");
    EXPECT_EQ(it.init(missing), -22);
    EXPECT_TRUE(logs.containsText("TagIterator", "fail to call xmlReadFile,  ")) << logs.dump();

    std::string broken = root.write("vendor/etc/korvi/broken.xml", "<root><a></root>");
    logs.clear();
    EXPECT_EQ(it.init(broken), -22);
    ASSERT_EQ(logs.linesWithTag("TagIterator").size(), 1u) << logs.dump();
    EXPECT_EQ(logs.linesWithTag("TagIterator")[0].priority, ANDROID_LOG_ERROR);
    EXPECT_FALSE(it.isCurValid());
}

TEST(TagIterator, StartsOnTheRootsFirstChildAndWalksSiblings) {
    TempDeviceRoot root;
    std::string path = root.write("walk.xml", kWalkFile);
    TagIterator it;
    ASSERT_EQ(it.init(path), 0);
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
    while (it.isCurValid()) {
        if (it.isElementNode()) ++elements;
        it.next();
    }
    EXPECT_EQ(elements, 4);  // b, d, f, g
    EXPECT_FALSE(it.isCurValid());
    EXPECT_FALSE(it.isNextValid());
    EXPECT_FALSE(it.isChildrenValid());
    EXPECT_FALSE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "");
    EXPECT_EQ(it.getLineNumber(), 0);
    it.next();
    it.childrenNext();
    EXPECT_FALSE(it.isCurValid());
}

// Moves the cursor of a freshly loaded kWalkFile onto the element of the given name.
void moveTo(TagIterator& it, const std::string& name) {
    while (it.isCurValid() && !(it.isElementNode() && it.getNodeName() == name)) it.next();
    ASSERT_TRUE(it.isCurValid()) << name;
}

TEST(TagIterator, ChildrenNextSkipsTheFirstChildNode) {
    TempDeviceRoot root;
    std::string path = root.write("walk.xml", kWalkFile);
    TagIterator it;
    ASSERT_EQ(it.init(path), 0);

    // Not indented: the first child element <c> is the one skipped, the cursor lands on <e>.
    moveTo(it, "b");
    it.pushNode();
    it.childrenNext();
    EXPECT_EQ(it.getNodeName(), "e");
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "b");

    // Indented: the skipped node is the whitespace, the cursor lands on the first element.
    moveTo(it, "g");
    it.pushNode();
    it.childrenNext();
    EXPECT_TRUE(it.isElementNode());
    EXPECT_EQ(it.getNodeName(), "h");
    it.popNode();

    // Only one text child: there is no second child node, so the cursor becomes null.
    it.clearAll();
    ASSERT_EQ(it.init(path), 0);
    moveTo(it, "d");
    EXPECT_TRUE(it.isChildrenValid());
    it.pushNode();
    it.childrenNext();
    EXPECT_FALSE(it.isCurValid());
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "d");

    // No children at all: the cursor stays on the element.
    moveTo(it, "f");
    EXPECT_FALSE(it.isChildrenValid());
    it.childrenNext();
    EXPECT_EQ(it.getNodeName(), "f");
}

TEST(TagIterator, NodeStackIsLastInFirstOutAndAnEmptyPopOnlyLogs) {
    TempDeviceRoot root;
    std::string path = root.write("walk.xml", kWalkFile);
    TagIterator it;
    ASSERT_EQ(it.init(path), 0);
    moveTo(it, "a");
    it.pushNode();
    moveTo(it, "d");
    it.pushNode();
    moveTo(it, "g");

    LogCapture logs;
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "d");
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "a");
    EXPECT_TRUE(logs.lines().empty()) << logs.dump();
    it.popNode();
    EXPECT_EQ(it.getNodeName(), "a");
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"), 1u)
        << logs.dump();
}

TEST(TagIterator, ReadsAttributesInDocumentOrderOrByName) {
    TempDeviceRoot root;
    std::string path = root.write("walk.xml", kWalkFile);
    TagIterator it;
    ASSERT_EQ(it.init(path), 0);

    // On a text node nothing is read and nothing is logged.
    LogCapture logs;
    std::vector<std::string> texts;
    it.parseNodeAll(texts);
    EXPECT_TRUE(texts.empty());
    std::vector<int> numbers;
    it.parseNodeIntVector(numbers);
    EXPECT_TRUE(numbers.empty());

    moveTo(it, "a");
    it.parseNodeAll(texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"2", "1", "a&b"}));
    it.parseNodeIntVector(numbers);
    EXPECT_EQ(numbers, (std::vector<int>{2, 1, 0}));

    std::vector<std::string> named;
    it.parseNodeWithName({"x", "missing", "y"}, named);
    EXPECT_EQ(named, (std::vector<std::string>{"1", "", "2"}));

    moveTo(it, "f");
    named.clear();
    it.parseNodeWithName({"frequency", "gain"}, named);
    EXPECT_EQ(named, (std::vector<std::string>{"", "-6"}));
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

TEST(TagIterator, ClearAllForgetsTheDocumentAndAllowsANewOne) {
    TempDeviceRoot root;
    std::string first = root.write("first.xml", "<r>\n<one/>\n</r>");
    std::string second = root.write("second.xml", "<r><two/></r>");
    TagIterator it;
    ASSERT_EQ(it.init(first), 0);
    it.next();
    it.pushNode();
    it.clearAll();
    EXPECT_FALSE(it.isCurValid());
    LogCapture logs;
    it.popNode();  // the stack went with the document
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"));
    ASSERT_EQ(it.init(second), 0);
    EXPECT_TRUE(it.isElementNode());  // not indented: the first child is the element itself
    EXPECT_EQ(it.getNodeName(), "two");

    // Loading over a loaded document replaces it and forgets the positions saved in the old one.
    it.pushNode();
    ASSERT_EQ(it.init(first), 0);
    logs.clear();
    it.popNode();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"));
    EXPECT_EQ(it.getNodeName(), "text");
}

TEST(IntTextForTuningFiles, ListsMaySeparateByCommasBlanksOrBoth) {
    std::vector<int> values;
    string2IntVector("10, 20,30", values);
    EXPECT_EQ(values, (std::vector<int>{10, 20, 30}));
    values.clear();
    string2IntVector("16384 0,, -5 x 7", values);  // stops at the first non-number
    EXPECT_EQ(values, (std::vector<int>{16384, 0, -5}));
    EXPECT_EQ(string2Int("  -42dB"), -42);
    EXPECT_EQ(string2Int("dB"), 0);
}

}  // namespace
}  // namespace korvi
