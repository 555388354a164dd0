// schemaValue.cpp - a JSON value made as data, written out whole.
#include "util/logsift/schemaValue.h"

namespace SchemaValue {

Value Value::Integer(int64_t value) {
    Value v(INTEGER);
    v.number = value;
    return v;
}

Value Value::Object(bool oneLine, std::vector<Member> members) {
    Value v(OBJECT);
    v.oneLine = oneLine;
    v.Add(std::move(members));
    return v;
}

Value Value::Array(bool oneLine, std::vector<Value> items) {
    Value v(ARRAY);
    v.oneLine = oneLine;
    v.items = std::move(items);
    return v;
}

Value& Value::Add(std::vector<Member> more) {
    for (Member& member : more)
        if (!member.second.Absent())
            members.push_back(std::move(member));
    return *this;
}

void Value::Write(QVS::JsonWriter& json) const {
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
