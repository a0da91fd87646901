#include <gtest/gtest.h>
#include <orvane/admin.h>

#include "tools/security/wanted_rights.hpp"

namespace orvane::tools {
namespace {

/// The rules of a document behind those of a role, for the name p.
std::vector<PermissionRule> added_to(std::optional<Role> role, const std::string& document,
                                     std::string& error) {
    constexpr std::int64_t now = 1'800'000'000;
    return rules_of(WantedRights{role, {}, {}, {}, {}, document}, "p", validity_in_days(365, now),
                    error)
        .value_or(std::vector<PermissionRule>{});
}

/// A document with one grant.
std::string document(const std::string& in_grant) {
    return "<dds>\n<permissions>\n<grant name=\"g\">\n" + in_grant +
           "</grant>\n</permissions>\n</dds>\n";
}

TEST(PermissionsDocument, RulesFollowThoseOfTheRole) {
    std::string error;
    const std::string rules = document(R"(<subject_name>CN=p</subject_name>
<validity><not_before>2020-01-01T00:00:00</not_before><not_after>2040-01-01T00:00:00Z</not_after></validity>
<deny_rule><domains><id>0</id></domains><publish><topics><topic>*</topic></topics></publish></deny_rule>
<allow_rule><domains><id_range><min>0</min><max>9</max></id_range></domains>
<publish><topics><topic>a &amp; b</topic></topics></publish>
<subscribe><topics><topic>c*</topic></topics><partitions><partition>x</partition></partitions></subscribe>
<subscribe><topics><topic>d</topic></topics><partitions><partition>*</partition></partitions></subscribe>
</allow_rule><default>DENY</default>)");
    Permissions permissions;
    permissions.rules = added_to(Role::application, rules, error);
    EXPECT_EQ(error, "");
    EXPECT_TRUE(permissions.may_publish(QEL_KX_LOG_TOPIC_NAME, 0))
        << "the role's rule is before the denial";
    EXPECT_FALSE(permissions.may_publish("a & b", 0));
    EXPECT_TRUE(permissions.may_publish("a & b", 9));
    EXPECT_FALSE(permissions.may_publish("a & b", 10));
    EXPECT_FALSE(permissions.may_subscribe("c", 9)) << "in another partition only";
    EXPECT_TRUE(permissions.may_subscribe("d", 9));
}

std::string in_rule(const std::string& criteria) {
    return "<allow_rule><domains><id>0</id></domains><publish>" + criteria +
           "</publish></allow_rule>";
}

TEST(PermissionsDocument, RulesThatWouldMeanSomethingElseAreRefused) {
    const std::string rule = in_rule("<topics><topic>a</topic></topics>") + '\n';
    const struct {
        std::string xml, error;
    } rows[] = {
        {document(rule + "<default>ALLOW</default>"), "'g' allows by default"},
        {document(rule + "<default>allow</default>"), "line 5: 'allow', expected ALLOW or DENY"},
        {document("<subject_name>CN=q</subject_name>" + rule), "no rules for CN=p"},
        {document("<validity><not_after>2027-02-01T00:00:00Z</not_after></validity>" + rule),
         "'g' holds until 2027-02-01T00:00:00Z"},
        {document("<validity><not_before>2027-02-01T00:00:00Z</not_before></validity>" + rule),
         "'g' holds from 2027-02-01T00:00:00Z on"},
        {document("<validity><not_after>tomorrow</not_after></validity>"), "line 4: 'tomorrow'"},
        {document("<allow_rule>\n<domains><id>231</id></domains></allow_rule>"),
         "line 5: '231' is no domain, expected 0 to 230"},
        {document("<allow_rule><domains><id_range><min>5</min></id_range></domains></allow_rule>"),
         "expected min and max"},
        {document("<allow_rule><publish><topics><topic>a</topic></topics></publish></allow_rule>"),
         "allow_rule without domains"},
        {document("<allow_rule><domains><id>1</id></domains><publish/></allow_rule>"),
         "publish without topics"},
        {document("<allow_rule>\n\n<relay/></allow_rule>"), "line 6: element relay in allow_rule"},
        {document("<allow_rule><publish><data_tags/></publish></allow_rule>"), "element data_tags"},
        {document("stray"), "text in grant"},
        {document("<subject_name>CN=<!-- -->p</subject_name>"), "line 4: text in pieces"},
        {document("<subject_name>CN=p</subject_name>\n<subject_name>CN=q</subject_name>"),
         "line 5: a second subject_name in grant"},
        {document("<deny_rule><domains><id>1</id></domains><domains/></deny_rule>"),
         "a second domains in deny_rule"},
        {document(in_rule("<topics><topic>a</topic></topics><topics><topic>b</topic></topics>")),
         "a second topics in publish"},
        {document(in_rule("<topics><topic> </topic></topics>")), "line 4: topic without text"},
        {document(in_rule("<topics><topic>a&#27;[31m</topic></topics>")), "'a\\x1b[31m' in topic"},
        {document(in_rule("<topics><topic>a\xe4</topic></topics>")), "expected UTF-8"},
        {document(in_rule("<topics><topic>a[^b]</topic></topics>")), "'a[^b]' means something"},
        {document(in_rule("<topics><topic>a[b</topic></topics>")), "'a[b' means something"},
        {document(in_rule("<topics><topic>a</topic></topics>") +
                  std::string(std::size_t{64} << 10U, ' ')),
         "at most 64 KiB"},
        {"<!DOCTYPE dds><dds/>", "line 1: DOCTYPE, expected dds"},
        {"<dds/>\n<dds/>", "line 2: element dds behind dds"},
        {"<dds/>x", "text behind dds"},
        {"", "nothing, expected dds"},
        {"<dds><permission/></dds>", "element permission in dds, expected permissions"},
        {"<domains/>", "element domains, expected dds"},
        {"<dds>\n<permissions>", "line 2: "},
    };
    for (const auto& row : rows) {
        std::string error;
        EXPECT_TRUE(added_to({}, row.xml, error).empty());
        EXPECT_NE(error.find(row.error), std::string::npos) << row.error << " in: " << error;
    }
}

}  // namespace
}  // namespace orvane::tools
