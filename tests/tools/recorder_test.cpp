#include "tools/recording/recorder.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>

#include "tests/tools/sample_events.hpp"
#include "tools/recording/recording_merge.hpp"

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

/// A disk with faults. Its files are on the real one, too, but empty, so that they can be deleted.
struct Disk {
    std::map<std::string, std::string> files;
    int error = 0;
    bool tears = false;  ///< what cannot be written whole stays in part

    std::unique_ptr<OutputFile> create(const std::string& path, int& failure) {
        if (error != 0 || files.count(path) > 0) {
            failure = error != 0 ? error : EEXIST;
            return nullptr;
        }
        std::ofstream{path};
        files[path];
        return std::make_unique<File>(*this, path);
    }

    class File : public OutputFile {
    public:
        File(Disk& disk, std::string path) : disk_(disk), path_(std::move(path)) {}
        int append(std::string_view bytes) override {
            EXPECT_FALSE(is_torn_);
            is_torn_ = disk_.error != 0 && disk_.tears;
            disk_.files[path_] += disk_.error == 0 ? bytes : is_torn_ ? bytes.substr(0, 5) : "";
            return disk_.error;
        }
        bool is_torn() const override { return is_torn_; }

    private:
        Disk& disk_;
        std::string path_;
        bool is_torn_ = false;
    };
};

class RecorderTest : public testing::Test {
protected:
    RecorderTest() {
        std::string name = testing::TempDir() + "recorder.XXXXXX";
        folder_ = mkdtemp(name.data());
    }
    ~RecorderTest() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return folder_ + '/' + name; }

    CreateFile disk() {
        return [this](const std::string& each, int& error) { return disk_.create(each, error); };
    }

    /// The messages and gaps of a recording on the real disk.
    static std::vector<std::string> contents(const std::string& path) {
        int error = 0;
        const auto reader = RecordingReader::open(path, false, error);
        EXPECT_NE(reader, nullptr) << path;
        std::vector<std::string> texts;
        while (const auto read = reader->next()) {
            const auto* event = std::get_if<RecordedEvent>(&*read);
            EXPECT_NE(event, nullptr) << std::get<ReadingProblem>(*read).text;
            const auto* gap = std::get_if<RecordingGap>(event);
            texts.push_back(gap != nullptr ? "gap of " + std::to_string(gap->events)
                                           : std::get<MessageEvent>(*event).record.message);
        }
        return texts;
    }

    std::string folder_;
    Disk disk_;
    RecordingFiles::Time now_;
};

TEST_F(RecorderTest, WritesABlockAfterASecondOrWhenItIsLarge) {
    RecordingFiles files({.path = path("a.jsonl")}, disk());
    ASSERT_EQ(files.open(now_), 0);
    files.add(message_event(noon, "first"), now_);
    files.tick(now_ + 999ms);
    EXPECT_EQ(disk_.files[path("a.jsonl")], "");
    EXPECT_EQ(files.due(), now_ + 1s);
    files.tick(now_ + 1s);
    EXPECT_EQ(disk_.files[path("a.jsonl")], json_line(message_event(noon, "first")));
    EXPECT_EQ(files.due(), std::nullopt);
    files.add(message_event(noon, std::string(300'000, 'x')), now_ + 1s);
    EXPECT_EQ(files.due(), std::nullopt);
    EXPECT_GT(disk_.files[path("a.jsonl")].size(), 300'000U);
}

TEST_F(RecorderTest, BeginsFilesBySizeAndTimeAndKeepsTheLastOnesOfItsOwn) {
    const RecordedEvent event = message_event(noon, "x");
    const std::string line = json_line(event);
    disk_.files[path("a.2.jsonl")] = "of an earlier run";
    std::ofstream{path("a.2.jsonl")};
    RecordingFiles files(
        {.path = path("a.jsonl"), .rotate_size = 2 * line.size(), .rotate_time = 10s, .keep = 2},
        disk());
    ASSERT_EQ(files.open(now_), 0);
    const auto add = [&](std::chrono::seconds time) {
        files.add(event, now_ + time);
        files.tick(now_ + time + 1s);
    };
    add(0s);
    add(1s);
    EXPECT_EQ(files.path(), path("a.jsonl"));
    add(2s);
    EXPECT_EQ(files.path(), path("a.1.jsonl"));
    add(20s);
    EXPECT_EQ(files.path(), path("a.3.jsonl"));
    files.close(now_);
    EXPECT_EQ(disk_.files[path("a.jsonl")], line + line);
    EXPECT_EQ(disk_.files[path("a.1.jsonl")], line);
    EXPECT_EQ(disk_.files[path("a.3.jsonl")], line);
    EXPECT_FALSE(std::filesystem::exists(path("a.jsonl")));
    for (const char* kept : {"a.1.jsonl", "a.2.jsonl", "a.3.jsonl"}) {
        EXPECT_TRUE(std::filesystem::exists(path(kept))) << kept;
    }
}

TEST_F(RecorderTest, WritesWhatCouldNotBeWrittenOnceThereIsRoom) {
    for (const bool tears : {false, true}) {
        disk_ = {};
        disk_.tears = tears;
        RecordingFiles files({.path = path("a.mcap"), .format = RecordingFormat::mcap}, disk());
        ASSERT_EQ(files.open(now_), 0);
        files.add(message_event(noon, "first"), now_);
        files.tick(now_ + 1s);
        files.add(message_event(noon, "second"), now_ + 1s);
        disk_.error = ENOSPC;
        files.tick(now_ + 2s);
        EXPECT_TRUE(files.is_stuck());
        EXPECT_EQ(files.error(), ENOSPC);
        files.tick(now_ + 3s);
        disk_.error = 0;
        files.tick(now_ + 4s);
        EXPECT_FALSE(files.is_stuck());
        files.add(message_event(noon, "third"), now_ + 5s);
        files.close(now_ + 5s);
        EXPECT_EQ(files.unwritten(), 0U);
        // A file that is torn ends there, and the next one begins with what it could not take.
        ASSERT_EQ(disk_.files.size(), tears ? 2U : 1U);
        for (const auto& [name, bytes] : disk_.files) {
            std::ofstream{name} << bytes;
        }
        if (tears) {
            std::filesystem::resize_file(path("a.mcap"), disk_.files[path("a.mcap")].size() - 5);
            EXPECT_EQ(contents(path("a.1.mcap")), (std::vector<std::string>{"second", "third"}));
        } else {
            EXPECT_EQ(contents(path("a.mcap")),
                      (std::vector<std::string>{"first", "second", "third"}));
        }
        std::filesystem::remove(path("a.mcap"));
    }
}

TEST_F(RecorderTest, RefusesAFileThatIsThereOrCannotBe) {
    std::ofstream{path("a.jsonl")};
    int error = 0;
    EXPECT_EQ(Recorder::start({.path = path("a.jsonl")}, nullptr, error), nullptr);
    EXPECT_EQ(error, EEXIST);
    EXPECT_EQ(Recorder::start({.path = path("no/a.jsonl")}, nullptr, error), nullptr);
    EXPECT_EQ(error, ENOENT);
}

/// What a recorder tells its user.
class Reports {
public:
    Recorder::Report reporter() {
        return [this](const std::string& report) {
            {
                const std::lock_guard lock(mutex_);
                text_ += report + '\n';
            }
            changed_.notify_all();
        };
    }
    void wait_for(const std::string& part) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return text_.find(part) != std::string::npos; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string text_;
};

TEST_F(RecorderTest, NeverWaitsForTheDiskAndSaysWhatItCouldNotKeep) {
    // The disk takes nothing until the queue has overflowed.
    std::atomic<bool> is_full{true};
    class SlowFile : public OutputFile {
    public:
        SlowFile(std::unique_ptr<OutputFile> file, std::atomic<bool>& is_full)
            : file_(std::move(file)), is_full_(is_full) {}
        int append(std::string_view bytes) override {
            return is_full_ && !bytes.empty() ? ENOSPC : file_->append(bytes);
        }
        bool is_torn() const override { return false; }

    private:
        std::unique_ptr<OutputFile> file_;
        std::atomic<bool>& is_full_;
    };
    Reports reports;
    int error = 0;
    const auto recorder = Recorder::start(
        {.path = path("a.jsonl"), .queue_size = 1'000'000}, reports.reporter(), error,
        [&](const std::string& each, int& failure) -> std::unique_ptr<OutputFile> {
            return std::make_unique<SlowFile>(create_file(each, failure), is_full);
        });
    ASSERT_NE(recorder, nullptr);
    constexpr std::size_t count = 3000;
    for (std::size_t i = 0; i < count; ++i) {
        recorder->add({message_event(noon, std::string(1000, 'x'))});
    }
    reports.wait_for("could not write " + path("a.jsonl") + ": No space left on device");
    is_full = false;
    reports.wait_for("is written again");
    reports.wait_for("not in " + path("a.jsonl") + ": the disk was full or too slow");
    recorder->add({message_event(noon, "last")});
    const std::uint64_t missing = recorder->stop();
    EXPECT_GT(missing, 0U);
    std::vector<std::string> kept(count - missing, std::string(1000, 'x'));
    kept.push_back("gap of " + std::to_string(missing));
    kept.emplace_back("last");
    EXPECT_TRUE(contents(path("a.jsonl")) == kept);
}

TEST_F(RecorderTest, CountsWhatIsLostWhenTheDiskStaysFull) {
    Reports reports;
    int error = 0;
    const auto recorder = Recorder::start({.path = "/dev/full"}, reports.reporter(), error);
    ASSERT_NE(recorder, nullptr);
    for (int i = 0; i < 10; ++i) {
        recorder->add({message_event(noon, "x")});
    }
    EXPECT_EQ(recorder->stop(), 10U);
    reports.wait_for("No space left on device");
}

TEST_F(RecorderTest, TakesBackWhatTheDiskTookInPart) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit limited = before;
    limited.rlim_cur = 100'001;
    setrlimit(RLIMIT_FSIZE, &limited);
    Reports reports;
    int error = 0;
    const auto recorder = Recorder::start({.path = path("a.jsonl")}, reports.reporter(), error);
    ASSERT_NE(recorder, nullptr);
    const std::vector<std::string> messages(300, std::string(1000, 'x'));
    for (const std::string& message : messages) {
        recorder->add({message_event(noon, message)});
    }
    reports.wait_for("File too large");
    EXPECT_EQ(std::filesystem::file_size(path("a.jsonl")), 0U);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(recorder->stop(), 0U);
    EXPECT_TRUE(contents(path("a.jsonl")) == messages);
}

TEST_F(RecorderTest, IsReadWhileItGrows) {
    int error = 0;
    std::ofstream file{path("a.jsonl")};
    const auto reader = RecordingReader::open(path("a.jsonl"), true, error);
    const std::string line = json_line(message_event(noon, "x"));
    EXPECT_FALSE(reader->next().has_value());
    file << line << line.substr(0, 20) << std::flush;
    EXPECT_TRUE(reader->next().has_value());
    EXPECT_FALSE(reader->next().has_value());
    file << line.substr(20) << std::flush;
    EXPECT_TRUE(reader->next().has_value());
    EXPECT_FALSE(reader->next().has_value());
}

TEST_F(RecorderTest, IsFollowedFromFileToFile) {
    // An earlier run has left the second name.
    std::ofstream{path("a.2.jsonl")} << json_line(message_event(noon, "of an earlier run"));
    const timespec long_ago[] = {{1, 0}, {1, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path("a.2.jsonl").c_str(), long_ago, 0), 0);
    RecordingFiles files({.path = path("a.jsonl"), .rotate_size = 1, .keep = 2});
    ASSERT_EQ(files.open(now_), 0);
    const auto add = [&](const char* message) { files.add(message_event(noon, message), now_); };
    std::string problems;
    RecordingMerge followed{[&](const std::string& problem) { problems += problem; }};
    ASSERT_EQ(followed.open(path("a.jsonl"), true), Status::ok);
    const auto all = [&] {
        std::string messages;
        do {
            while (const auto event = followed.next()) {
                messages += std::get<MessageEvent>(*event).record.message + ' ';
            }
        } while (followed.go_on());
        return messages;
    };
    EXPECT_FALSE(followed.next().has_value());
    add("one");
    add("two");
    EXPECT_TRUE(followed.go_on());
    EXPECT_EQ(all(), "one two ") << "the end of the first file came after it had been read";
    add("three");
    EXPECT_EQ(files.path(), path("a.3.jsonl"));
    EXPECT_EQ(all(), "three ");
    // Of these, the oldest is deleted before it is read, and the other one is read by itself, too.
    add("four");
    add("five");
    add("six");
    EXPECT_EQ(problems, "");
    EXPECT_EQ(all(), "five six ");
    EXPECT_EQ(problems, path("a.5.jsonl") + ": a file between " + path("a.3.jsonl") +
                            " and this one has been deleted");
    ASSERT_EQ(followed.open(path("a.6.jsonl"), true), Status::ok);
    EXPECT_EQ(all(), "six ");
    add("seven");
    EXPECT_EQ(all(), "seven ");
}

TEST_F(RecorderTest, FindsTheNextFileByItsName) {
    for (const char* name : {"a.mcap", "a.1.mcap", "a.2", "a.10.mcap", "a.1.jsonl", "a.x.mcap",
                             "a.02.mcap", "c.7.1.mcap", "c.8.mcap"}) {
        std::ofstream{path(name)} << 'x';
    }
    std::ofstream{path("a.2.jsonl")};
    const struct {
        const char* name;
        const char* next;
        bool is_adjacent = true;
    } cases[] = {{"a.mcap", "a.1.mcap"},    {"a.1.mcap", "a.10.mcap", false},
                 {"a.9.mcap", "a.10.mcap"}, {"a.10.mcap", nullptr},
                 {"a", "a.2", false},       {"a.jsonl", "a.1.jsonl"},
                 {"b.mcap", nullptr},       {"a.1.jsonl", nullptr},
                 {"c.7.mcap", "c.7.1.mcap"}};
    for (const auto& each : cases) {
        const auto found = next_file(path(each.name), {0, 0});
        EXPECT_EQ(found ? found->path : "", each.next != nullptr ? path(each.next) : "");
        EXPECT_EQ(!found || found->is_adjacent, each.is_adjacent) << each.name;
    }
}

TEST_F(RecorderTest, SaysWhereAFileIsDamagedAndWhichIsNone) {
    const auto problem = [&](const std::string& bytes) {
        std::ofstream{path("a")} << bytes;
        int error = 0;
        const auto read = RecordingReader::open(path("a"), false, error)->next();
        return read ? std::get<ReadingProblem>(*read).text : "none";
    };
    EXPECT_EQ(problem(""), "none");
    EXPECT_EQ(problem("{\n"), path("a") + ":1: expected a JSON object");
    EXPECT_EQ(problem("\x89PNG\r\n\x1a\n"),
              path("a") + ":0: expected the first bytes of an MCAP file");
    EXPECT_EQ(problem("hello"), path("a") + ": no recording, expected MCAP or lines of JSON");
    int error = 0;
    EXPECT_EQ(RecordingReader::open(path("none"), false, error), nullptr);
    EXPECT_EQ(error, ENOENT);
    const auto folder = RecordingReader::open(folder_, false, error)->next();
    EXPECT_EQ(std::get<ReadingProblem>(*folder).text, folder_ + ": could not read: Is a directory");
}

}  // namespace
}  // namespace orvane::tools
