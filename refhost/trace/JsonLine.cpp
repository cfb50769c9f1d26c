#include "refhost/trace/JsonLine.h"

#include <nlohmann/json.hpp>

namespace refhost {

/// What the library's event parser calls while it reads.
class JsonLine::Handler {
  public:
    explicit Handler(JsonLine& line) : mLine(line) {}

    bool null() { return value({.kind = Kind::Null}); }
    bool boolean(bool is) { return value({.kind = Kind::Boolean, .integer = is ? 1 : 0}); }
    bool number_integer(int64_t number) { return value({.kind = Kind::Integer, .integer = number}); }
    bool number_unsigned(uint64_t number) {
        if (number > uint64_t{INT64_MAX}) return value({.kind = Kind::BigInteger, .real = static_cast<double>(number)});
        return value({.kind = Kind::Integer, .integer = static_cast<int64_t>(number)});
    }
    bool number_float(double number, const std::string& text) {
        const bool whole = text.find_first_of(".eE") == std::string::npos;  // too long for the library's integers
        return value({.kind = whole ? Kind::BigInteger : Kind::Float, .real = number});
    }
    bool string(std::string& text) { return value(stringNode(text)); }
    bool binary(std::vector<uint8_t>& /*bytes*/) { return false; }  // JSON text has none

    bool start_object(size_t /*size*/) { return open(Kind::Object); }
    bool key(std::string& text) {
        push(stringNode(text));
        return true;
    }
    bool end_object() { return close(); }
    bool start_array(size_t /*size*/) { return open(Kind::Array); }
    bool end_array() { return close(); }

    bool parse_error(size_t position, const std::string& /*token*/, const nlohmann::detail::exception& fault) {
        // What stands before these is the library's own numbering; what it cites may be as long as the line.
        std::string_view reason = fault.what();
        for (const std::string_view before : {"] ", "parse error at line 1, column ", ": "}) {
            const size_t at = reason.find(before);
            if (at != std::string_view::npos) reason.remove_prefix(at + before.size());
        }
        constexpr size_t kWorthCiting = 160;
        mLine.mError = "column " + std::to_string(position) + ": " + std::string(reason.substr(0, kWorthCiting));
        return false;
    }

  private:
    Node stringNode(const std::string& text) {
        const size_t offset = mLine.mText.size();
        mLine.mText += text;
        return {.kind = Kind::String, .size = static_cast<uint32_t>(text.size()), .text = offset};
    }
    void push(Node node) {
        node.next = mLine.mNodes.size() + 1;
        mLine.mNodes.push_back(node);
    }
    bool value(const Node& node) {
        if (!mLine.mOpen.empty()) ++mLine.mNodes[mLine.mOpen.back()].size;
        push(node);
        return true;
    }
    bool open(Kind kind) {
        value({.kind = kind});
        mLine.mOpen.push_back(mLine.mNodes.size() - 1);
        return true;
    }
    bool close() {
        mLine.mNodes[mLine.mOpen.back()].next = mLine.mNodes.size();
        mLine.mOpen.pop_back();
        return true;
    }

    JsonLine& mLine;
};

bool JsonLine::parse(std::string_view text) {
    mNodes.clear();
    mText.clear();
    mOpen.clear();
    mError.clear();
    Handler handler(*this);
    return nlohmann::json::sax_parse(text.begin(), text.end(), &handler);
}

double JsonLine::Value::real() const {
    return kind() == Kind::Integer ? static_cast<double>(node().integer) : node().real;
}

std::string_view JsonLine::Value::string() const {
    return std::string_view(mLine->mText).substr(node().text, node().size);
}

JsonLine::Value::Iterator& JsonLine::Value::Iterator::operator++() {
    mNode = mLine->mNodes[mMembers ? mNode + 1 : mNode].next;
    return *this;
}

JsonLine::Value::Iterator JsonLine::Value::begin() const { return {*mLine, mNode + 1, kind() == Kind::Object}; }
JsonLine::Value::Iterator JsonLine::Value::end() const { return {*mLine, node().next, kind() == Kind::Object}; }

}  // namespace refhost
