#define LOG_TAG "TagIterator"

#include "tuning/TagIterator.h"

#include <log/log.h>
#include <sys/stat.h>

#include <libxml/entities.h>
#include <libxml/hash.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

namespace korvi {

namespace {

bool declaresEntities(const xmlDoc* doc) {
    for (const xmlDtd* dtd : {doc->intSubset, doc->extSubset}) {
        if (dtd == nullptr) continue;
        for (void* table : {dtd->entities, dtd->pentities}) {
            if (table != nullptr && xmlHashSize(static_cast<xmlHashTablePtr>(table)) > 0) {
                return true;
            }
        }
    }
    return false;
}

// Refuses a file larger than any tuning file before the XML library reads it; a file that is
// not a regular one (a pipe) is read as it comes.
bool isOversized(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    if (st.st_size <= TagIterator::kMaxFileBytes) return false;
    ALOGE("%s is %lld bytes, more than the %lld a tuning file may have: refused", path.c_str(),
          static_cast<long long>(st.st_size), TagIterator::kMaxFileBytes);
    return true;
}

}  // namespace

void TagIterator::DocFree::operator()(xmlDoc* doc) const {
    xmlFreeDoc(doc);
}

TagIterator::TagIterator() {
    // Sets up the library's global state once per process; safe to call from any thread.
    xmlInitParser();
}

TagIterator::~TagIterator() = default;

int32_t TagIterator::init(std::string& path) {
    if (path.empty()) {
        ALOGE("Invalide xml file path, %d", __LINE__);
        return -22;
    }
    if (isOversized(path)) return -22;
    xmlDoc* doc = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET);
    if (doc == nullptr) {
        ALOGE("fail to call xmlReadFile,  %d", __LINE__);
        return -22;
    }
    std::unique_ptr<xmlDoc, DocFree> owned(doc);
    if (declaresEntities(doc)) {
        ALOGE("%s declares entities, which a tuning file never needs: refused", path.c_str());
        return -22;
    }
    xmlNode* root = xmlDocGetRootElement(doc);
    if (root == nullptr) {
        ALOGE("fail to call xmlDocGetRootElement, %d", __LINE__);
        return -19;
    }
    // A document loaded before is released here, and with it every position saved in it: a
    // saved node of a freed document must never come back as the current node.
    mDoc = std::move(owned);
    mNodeStack.clear();
    mRoot = root;
    mCurrent = root->children;
    return 0;
}

void TagIterator::next() {
    if (mCurrent != nullptr) mCurrent = mCurrent->next;
}

void TagIterator::childrenNext() {
    if (mCurrent != nullptr && mCurrent->children != nullptr) {
        mCurrent = mCurrent->children->next;
    }
}

bool TagIterator::isChildrenValid() {
    return mCurrent != nullptr && mCurrent->children != nullptr;
}

bool TagIterator::isNextValid() {
    return mCurrent != nullptr && mCurrent->next != nullptr;
}

bool TagIterator::isCurValid() {
    return mCurrent != nullptr;
}

bool TagIterator::isElementNode() {
    return mCurrent != nullptr && mCurrent->type == XML_ELEMENT_NODE;
}

void TagIterator::pushNode() {
    mNodeStack.push_back(mCurrent);
}

void TagIterator::popNode() {
    if (mNodeStack.empty()) {
        ALOGE("It's empty in node stack!");
        return;
    }
    mCurrent = mNodeStack.back();
    mNodeStack.pop_back();
}

std::string TagIterator::getNodeName() {
    if (mCurrent == nullptr || mCurrent->name == nullptr) return "";
    return reinterpret_cast<const char*>(mCurrent->name);
}

namespace {

// The value of one attribute through xmlGetProp, which also resolves entities; "" when absent.
std::string attributeValue(xmlNode* node, const xmlAttr* attr) {
    xmlChar* value = xmlGetProp(node, attr->name);
    if (value == nullptr) return "";
    std::string text(reinterpret_cast<const char*>(value), xmlStrlen(value));
    xmlFree(value);
    return text;
}

}  // namespace

void TagIterator::parseNodeIntVector(std::vector<int>& out) {
    if (mCurrent == nullptr) {
        ALOGE("Invalid node when parsing String vector.");
        return;
    }
    if (mCurrent->type != XML_ELEMENT_NODE) return;
    for (const xmlAttr* attr = mCurrent->properties; attr != nullptr; attr = attr->next) {
        out.push_back(string2Int(attributeValue(mCurrent, attr)));
    }
}

void TagIterator::parseNodeAll(std::vector<std::string>& out) {
    parseNodeWithName({}, out);
}

void TagIterator::parseNodeWithName(const std::vector<std::string>& names,
                                    std::vector<std::string>& out) {
    if (mCurrent == nullptr) {
        ALOGE("Invalid node when parsing String vector.");
        return;
    }
    if (mCurrent->type != XML_ELEMENT_NODE) return;
    if (names.empty()) {
        for (const xmlAttr* attr = mCurrent->properties; attr != nullptr; attr = attr->next) {
            out.push_back(attributeValue(mCurrent, attr));
        }
        return;
    }
    if (out.size() < names.size()) out.resize(names.size());
    for (const xmlAttr* attr = mCurrent->properties; attr != nullptr; attr = attr->next) {
        const char* attrName = reinterpret_cast<const char*>(attr->name);
        for (size_t i = 0; i < names.size(); ++i) {
            if (names[i] == attrName) out[i] = attributeValue(mCurrent, attr);
        }
    }
}

void TagIterator::clearAll() {
    mDoc.reset();
    mRoot = nullptr;
    mCurrent = nullptr;
    mNodeStack.clear();
}

long TagIterator::getLineNumber() const {
    return mCurrent == nullptr ? 0 : xmlGetLineNo(mCurrent);
}

}  // namespace korvi
