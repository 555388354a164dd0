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

// Out of the class, still in the header: the schema's one source includes it.
inline Value Value::Integer(int64_t value) {
    Value v(INTEGER);
    v.number = value;
    return v;
}

inline Value Value::Object(bool oneLine, std::vector<Member> members) {
    Value v(OBJECT);
    v.oneLine = oneLine;
    v.Add(std::move(members));
    return v;
}

inline Value Value::Array(bool oneLine, std::vector<Value> items) {
    Value v(ARRAY);
    v.oneLine = oneLine;
    v.items = std::move(items);
    return v;
}

inline Value& Value::Add(std::vector<Member> more) {
    for (Member& member : more)
        if (!member.second.Absent())
            members.push_back(std::move(member));
    return *this;
}

inline void Value::Write(QVS::JsonWriter& json) const {
    switch (type) {
    case ABSENT:
        json.Null();
        break;
    case STRING:
        json.String(text);
        break;
    case INTEGER:
        json.Signed(number);
        break;
    case OBJECT:
        json.BeginObject(oneLine);
        for (const Member& member : members) {
            json.Key(member.first);
            member.second.Write(json);
        }
        json.EndObject();
        break;
    case ARRAY:
        json.BeginArray(oneLine);
        for (const Value& item : items)
            item.Write(json);
        json.EndArray();
        break;
    }
}

} // namespace SchemaValue

#endif
