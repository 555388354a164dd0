// schemaValue.h - a JSON value made as data, so that the schema of
// logsift-json's documents is written as the nesting it has: objects and
// arrays from initializer lists, each marked whether it stands on one line,
// and written out whole by the streaming writer.
#ifndef UTIL_LOGSIFT_SCHEMAVALUE_H
#define UTIL_LOGSIFT_SCHEMAVALUE_H

#include "util/support/jsonWriter.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace SchemaValue {

class Value;
using Member = std::pair<std::string, Value>;

class Value {
public:
    // A string; a null text is no member at all (see Object).
    Value(const char* text) : type(text ? STRING : ABSENT), text(text ? text : "") {}
    Value(std::string value) : type(STRING), text(std::move(value)) {}
    static Value Integer(int64_t number);

    // An object of `members` in their order, on one line or over lines; a
    // member whose value is a null text is left out.
    static Value Object(bool oneLine, std::vector<Member> members);
    static Value Array(bool oneLine, std::vector<Value> items);

    // Adds members at the end (an object only).
    Value& Add(std::vector<Member> more);

    void Write(QVS::JsonWriter& json) const;
    bool Absent() const { return type == ABSENT; }

private:
    enum Type { ABSENT, STRING, INTEGER, OBJECT, ARRAY };
    explicit Value(Type kind) : type(kind) {}

    Type type;
    std::string text;
    int64_t number = 0;
    bool oneLine = false;
    std::vector<Member> members;
    std::vector<Value> items;
};

// The shapes the schema is made of.
inline Value Line(std::vector<Member> members) { return Value::Object(true, std::move(members)); }
inline Value Block(std::vector<Member> members) { return Value::Object(false, std::move(members)); }
inline Value LineList(std::vector<Value> items) { return Value::Array(true, std::move(items)); }
inline Value BlockList(std::vector<Value> items) { return Value::Array(false, std::move(items)); }

} // namespace SchemaValue

#endif
