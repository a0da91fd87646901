#include <gtest/gtest.h>

#include "tools/http/http_header.hpp"
#include "tools/http/http_url.hpp"

namespace orvane::tools {
namespace {

TEST(HttpTest, ReadsAddressesAsRfc3986HasThem) {
    const struct {
        const char* text;
        const char* read;  ///< host, port and target; NULL for a refusal
        const char* same = nullptr;
    } cases[] = {
        {"http://localhost:4318", "localhost 4318 /", "http://localhost:4318/"},
        {"http://a", "a 80 /", "http://a/"},
        {"https://a/v1/logs", "a 443 /v1/logs"},
        {"https://a:80/", "a 80 /"},
        {"http://a?x=1/2", "a 80 /?x=1/2", "http://a/?x=1/2"},
        {"http://[::1]:4318/x", "::1 4318 /x"},
        {"http://[fe80::a]/", "fe80::a 80 /"},
        {"", nullptr},
        {"localhost:4318", nullptr},
        {"HTTP://a", nullptr},
        {"http://", nullptr},
        {"http://[::1", nullptr},
        {"http://[]", nullptr},
        {"http://a:", nullptr},
        {"http://a:0", nullptr},
        {"http://a:+1", nullptr},
        {"http://a:65536", nullptr},
        {"http://[::1]4318", nullptr},
        {"http://u@a", nullptr},
        {"http://a/#x", nullptr},
        {"http://a/x\r\ny", nullptr},
        {"http://a b", nullptr},
    };
    for (const auto& each : cases) {
        std::string error;
        const auto url = parse_http_url(each.text, error);
        ASSERT_EQ(url.has_value(), each.read != nullptr) << each.text << error;
        EXPECT_EQ(error.empty(), url.has_value()) << each.text;
        if (url) {
            EXPECT_EQ(url->host + ' ' + std::to_string(url->port) + ' ' + url->target, each.read);
            EXPECT_EQ(format_http_url(*url), each.same != nullptr ? each.same : each.text);
        }
    }
}

TEST(HttpTest, ReadsHeaderFieldsAndRefusesWhatWouldBreakARequest) {
    const struct {
        const char* text;
        const char* read;  ///< NULL for a refusal
    } cases[] = {
        {"a=b", "a: b\n"},
        {" a = b c ,, A=d=%2C%25 ", "A: d=,%\n"},
        {"a=b,c=", "a: b\nc: \n"},
        {"", ""},
        {"a", nullptr},
        {"=b", nullptr},
        {"a b=c", nullptr},
        {"a=%0d%0ab", nullptr},
        {"a=%4", nullptr},
        {"a=%zz", nullptr},
        {"content-length=1", nullptr},
    };
    for (const auto& each : cases) {
        std::string error;
        const auto headers = parse_http_header_list(each.text, error);
        ASSERT_EQ(headers.has_value(), each.read != nullptr) << each.text << error;
        EXPECT_EQ(error.empty(), headers.has_value()) << each.text;
        std::string text;
        for (const HttpHeader& header : headers.value_or(std::vector<HttpHeader>{})) {
            text += header.name + ": " + header.value + '\n';
        }
        EXPECT_EQ(text, each.read != nullptr ? each.read : "");
    }
}

}  // namespace
}  // namespace orvane::tools
