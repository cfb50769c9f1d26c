#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace refhost {

/// One line of JSON, parsed into a flat list of nodes that is used again for the next line: a trace of any length is
/// read without a heap block per value. Keeps what a trace has to judge: integers apart from floats, and keys given
/// twice. One thread.
class JsonLine {
  public:
    /// A BigInteger is one beyond 64 bits signed: it fits no field of integers.
    enum class Kind : uint8_t { Null, Boolean, Integer, BigInteger, Float, String, Array, Object };

  private:
    struct Node {
        Kind kind = Kind::Null;
        uint32_t size = 0;    ///< elements, members, or bytes of a string
        size_t next = 0;      ///< the node after this value and all that it holds
        size_t text = 0;      ///< offset of a string in mText
        int64_t integer = 0;  ///< Integer, Boolean
        double real = 0;      ///< BigInteger, Float
    };

  public:
    /// A value within the line; valid until the next parse().
    class Value {
      public:
        Value(const JsonLine& line, size_t node) : mLine(&line), mNode(node) {}

        Kind kind() const { return node().kind; }
        bool boolean() const { return node().integer != 0; }
        int64_t integer() const { return node().integer; }  ///< Integer
        double real() const;                                ///< Integer, BigInteger or Float
        std::string_view string() const;                    ///< String

        size_t size() const { return node().size; }  ///< elements of an Array, members of an Object

        /// Elements of an array, or the values of an object's members, in order.
        class Iterator {
          public:
            Iterator(const JsonLine& line, size_t node, bool members) : mLine(&line), mNode(node), mMembers(members) {}
            Value operator*() const { return {*mLine, mMembers ? mNode + 1 : mNode}; }
            std::string_view key() const { return Value(*mLine, mNode).string(); }  ///< of an object's member
            Iterator& operator++();
            bool operator==(const Iterator& other) const { return mNode == other.mNode; }

          private:
            const JsonLine* mLine;
            size_t mNode;
            bool mMembers;
        };
        Iterator begin() const;
        Iterator end() const;

      private:
        friend class JsonLine;
        const Node& node() const { return mLine->mNodes[mNode]; }

        const JsonLine* mLine;
        size_t mNode;
    };

    /// Parses one text. On a fault the reason is in error(), with the column, and the old value is gone.
    bool parse(std::string_view text);
    const std::string& error() const { return mError; }
    Value root() const { return {*this, 0}; }

  private:
    class Handler;

    std::vector<Node> mNodes;
    std::string mText;
    std::vector<size_t> mOpen;  ///< arrays and objects that the parser is inside of
    std::string mError;
};

}  // namespace refhost
