#include "tests/peer/samples.hpp"

#include <fastrtps/utils/md5.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <stdexcept>

namespace foreign {
namespace {

using Pair = std::pair<std::string, std::string>;

Pair split(const std::string& text, char separator) {
    const std::size_t place = text.find(separator);
    if (place == std::string::npos) {
        throw std::runtime_error{"not two parts: " + text};
    }
    return {text.substr(0, place), text.substr(place + 1)};
}

std::vector<Pair> pairs_of(const std::string& text) {
    std::vector<Pair> pairs;
    std::istringstream list{text};
    for (std::string pair; std::getline(list, pair, ',');) {
        pairs.push_back(split(pair, ':'));
    }
    return pairs;
}

void put_identity(ParameterListWriter& writer, const std::string& text) {
    const auto [host, application] = split(text, ':');
    writer.put_long(std::stol(host, nullptr, 16));
    writer.put_long(std::stol(application, nullptr, 16));
}

std::string get_identity(ParameterListReader& reader) {
    const auto host = static_cast<unsigned>(reader.get_long());
    const auto application = static_cast<unsigned>(reader.get_long());
    char text[32];
    std::snprintf(text, sizeof text, "%08x:%08x", host, application);
    return text;
}

std::string get_pairs(ParameterListReader& reader) {
    std::string text;
    constexpr int pairs_in_state = 5;
    for (int i = 0; i < pairs_in_state; ++i) {
        text += (i == 0 ? "" : ",") + std::to_string(reader.get_long());
        text += ':' + std::to_string(reader.get_long());
    }
    return text;
}

std::string get_value(ParameterListReader& reader, ValueKind kind) {
    switch (kind) {
        case ValueKind::identity:
            return get_identity(reader);
        case ValueKind::number:
            return std::to_string(reader.get_long());
        case ValueKind::text:
            return reader.get_string();
        case ValueKind::pairs:
            return get_pairs(reader);
    }
    throw std::runtime_error{"no such kind of value"};
}

/// Keys consist of identities and numbers only.
KeyHash key_hash(const TopicDescription& topic, const std::vector<std::string>& values) {
    ParameterListWriter key{2};
    for (std::uint32_t id = 0; id < topic.key_members; ++id) {
        key.put_member(id, [&] {
            if (topic.members[id].kind == ValueKind::identity) {
                put_identity(key, values[id]);
            } else {
                key.put_long(std::stol(values[id]));
            }
        });
    }
    key.put_list_end();
    MD5 md5;
    md5.init();
    md5.update(key.bytes.data() + encapsulation_size,
               static_cast<MD5::size_type>(key.bytes.size() - encapsulation_size));
    md5.finalize();
    return std::to_array(md5.digest);
}

using Words = std::map<std::string, std::string>;

Words words_of(const std::string& text) {
    Words words{{"originator", "0:0"}, {"encapsulation", "3"}, {"level", "0"}};
    std::istringstream list{text};
    for (std::string word; list >> word;) {
        const auto [name, value] = split(word, '=');
        words[name] = value;
    }
    return words;
}

void put_command(ParameterListWriter& writer, const Words& words) {
    // The value's member has the id behind that of its kind's number.
    const long kind = words.contains("verbosities") ? 1 : words.contains("format") ? 2 : 0;
    writer.put_member(0, [&] { writer.put_long(kind); });
    writer.put_member(static_cast<std::uint32_t>(kind + 1), [&] {
        if (kind != 1) {
            return writer.put_long(std::stol(words.at(kind == 2 ? "format" : "level")));
        }
        const std::vector<Pair> pairs = pairs_of(words.at("verbosities"));
        writer.put_long(static_cast<long>(pairs.size()));
        for (const auto& [category, verbosity] : pairs) {
            writer.put_long(std::stol(category));
            writer.put_long(std::stol(verbosity));
        }
    });
    writer.put_list_end();
}

}  // namespace

// clang-format off
const TopicDescription log_topic{
    "log", "qel/orvane", "com::qel::kx::LogMessage", 2,
    {{"logger", ValueKind::identity}, {"level", ValueKind::number},
     {"category", ValueKind::text}, {"message", ValueKind::text}}};
const TopicDescription state_topic{
    "state", "qel/orvane/administration/state", "com::qel::kx::admin::State", 1,
    {{"logger", ValueKind::identity}, {"domain", ValueKind::number}, {"state", ValueKind::number},
     {"kind", ValueKind::text}, {"level", ValueKind::number}, {"verbosities", ValueKind::pairs},
     {"format", ValueKind::number}}};
const TopicDescription request_topic{
    "request", "qel/orvane/administration/command_request", "com::qel::kx::admin::CommandRequest",
    0, {}};
const TopicDescription response_topic{
    "response", "qel/orvane/administration/command_response",
    "com::qel::kx::admin::CommandResponse", 1,
    {{"logger", ValueKind::identity}, {"originator", ValueKind::identity},
     {"invocation", ValueKind::number}, {"result", ValueKind::number},
     {"message", ValueKind::text}}};
// clang-format on

Sample decode(const TopicDescription& topic, const Bytes& payload) {
    Sample sample;
    ParameterListReader reader{payload};
    sample.encapsulation = reader.encapsulation;
    std::vector<std::string> values(topic.members.size());
    reader.get_members([&](std::uint32_t id) {
        const Member& member = topic.members.at(id);
        values[id] = get_value(reader, member.kind);
        sample.fields.emplace_back(member.name, values[id]);
    });
    sample.key_hash = key_hash(topic, values);
    return sample;
}

Bytes encode_request(const std::string& text) {
    const Words words = words_of(text);
    ParameterListWriter writer{
        static_cast<std::uint16_t>(std::stol(words.at("encapsulation"), nullptr, 0))};
    writer.put_member(0, [&] { put_identity(writer, words.at("target")); });
    writer.put_member(1, [&] { put_identity(writer, words.at("originator")); });
    writer.put_member(2, [&] { writer.put_long(std::stol(words.at("invocation"))); });
    writer.put_member(3, [&] { put_command(writer, words); });
    writer.put_list_end();
    return writer.bytes;
}

}  // namespace foreign
