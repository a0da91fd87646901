#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "platform/dds/interface/string_list.hpp"
#include "platform/dds/qos/conversion.hpp"
#include "tests/support/text.hpp"

using Names = std::vector<std::string>;
using orvane::test::Reports;

/// A working directory of its own, and a factory without profiles at the beginning.
class ProfileFiles : public testing::Test {
protected:
    ProfileFiles() : previous_(std::filesystem::current_path()) {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        directory_ = std::filesystem::temp_directory_path() /
                     (std::string("profiles_") + test->name() + std::to_string(getpid()));
        std::filesystem::create_directory(directory_);
        std::filesystem::current_path(directory_);
        unsetenv("PEXA_QOS_PROFILES");
        start_again();
        // Its sink is there before a test puts another one in its place.
        PEXA_Config_Logger_get_instance();
    }
    ~ProfileFiles() override {
        start_again();
        std::filesystem::current_path(previous_);
        std::filesystem::remove_all(directory_);
    }

    /// The next operation meets a factory that has loaded nothing.
    static void start_again() {
        EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    }

    static constexpr auto factory = DDS_DomainParticipantFactory_get_instance;

    static void write(const std::string& file_name, const std::string& content) {
        std::ofstream(file_name) << content;
    }
    /// A document with library L of these profiles.
    static std::string library(const std::string& profiles) {
        return "<dds><qos_library name=\"L\">" + profiles + "</qos_library></dds>";
    }
    static DDS_ReturnCode_t load(const std::string& document) {
        write("loaded.xml", document);
        return DDS_DomainParticipantFactory_load_qos_profiles(factory(), "loaded.xml");
    }

    static Names profiles_of(const char* library) {
        DDS_StringSeq names{};
        EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profiles(factory(), &names, library),
                  DDS_RETCODE_OK);
        Names result = pexa::dds::to_strings(&names);
        DDS_StringSeq_finalize(&names);
        return result;
    }

    static bool has_line(const Names& lines, const std::string& part) {
        return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(part) != std::string::npos;
        });
    }

    /// What a profile of library L gives writers of a topic.
    static DDS_ReturnCode_t fill(DDS_DataWriterQos& qos, const char* profile,
                                 const char* topic_name = nullptr) {
        return DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
            factory(), &qos, "L", profile, topic_name);
    }
    using WriterQos = pexa::dds::OwnedQos<DDS_DataWriterQos>;

    /// The transport priority that a profile of library L gives the writers of a topic, or -1.
    static DDS_Long priority_of(const char* profile, const char* topic_name = nullptr) {
        WriterQos qos;
        const bool filled = fill(qos.get(), profile, topic_name) == DDS_RETCODE_OK;
        return filled ? qos.get().transport_priority.value : -1;
    }
    /// A profile of that name with this transport priority for writers.
    static std::string priority_profile(const std::string& name, int priority,
                                        const std::string& attributes = "") {
        return "<qos_profile name=\"" + name + "\" " + attributes +
               "><datawriter_qos><transport_priority><value>" + std::to_string(priority) +
               "</value></transport_priority></datawriter_qos></qos_profile>";
    }

private:
    std::filesystem::path previous_;
    std::filesystem::path directory_;
};
