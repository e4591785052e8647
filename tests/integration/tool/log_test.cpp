// log: the library's log, read.
#include <filesystem>
#include <fstream>

#include "in_process.h"
#include "interrupt.h"
#include "library_log.h"
#include "log_files.h"
#include "log_printer.h"
#include "output.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int today = 20261120;

std::string thread_piece(unsigned number)
{
    char text[32];
    std::snprintf(text, sizeof text, "Thd %16u ", number);
    return text;
}

std::string line_at(const std::string& clock, unsigned thread, const std::string& message,
                    const std::string& end = "\r\r\n")
{
    return "Mon Nov 16 " + clock + " " + thread_piece(thread) + message + end;
}

// The entries of a text that comes in pieces of this size, as "02:37:44.123 7 message".
std::vector<std::string> entries(const std::string& text, std::size_t piece = std::string::npos)
{
    std::vector<std::string> all;
    vyra_tool::Log_parser parser(today);
    const auto note = [&](const vyra_tool::Log_entry& entry) {
        all.push_back((entry.time.empty() ? "-" : entry.time.substr(11)) + " " +
                      (entry.thread ? std::to_string(*entry.thread) : "-") + " " + entry.message +
                      (entry.mixed ? " ~" : ""));
    };
    for (std::size_t at = 0; at < text.size(); at += std::min(piece, text.size())) {
        parser.read(std::string_view(text).substr(at, piece), note);
    }
    parser.end(note);
    return all;
}

TEST(Library_log_test, lines_have_time_thread_and_message_whatever_their_end)
{
    const std::string text = line_at("02:37:44.123", 9284, "open_device:    Error=9110: Error 9110 #1") +
                             line_at("02:37:44.124", 7, "--Error : QXDR_StopCapture ret = 4 ", "\r\n") +
                             line_at("02:37:44.125", 1234567890, "the last one, without an end", "");
    const auto expected = ElementsAre("02:37:44.123 9284 open_device:    Error=9110: Error 9110 #1",
                                      "02:37:44.124 7 --Error : QXDR_StopCapture ret = 4 ",
                                      "02:37:44.125 1234567890 the last one, without an end");
    EXPECT_THAT(entries(text), expected);
    for (const std::size_t piece : {1U, 3U, 50U}) {
        EXPECT_THAT(entries(text, piece), expected) << piece;
    }
}

TEST(Library_log_test, pieces_of_several_writers_find_each_other)
{
    const std::string first = "Mon Nov 16 02:00:00.001";
    const std::string second = "Mon Nov 16 02:00:00.002";
    EXPECT_THAT(entries(first + second + "  " + thread_piece(1) + thread_piece(2) + "second\r\nfirst\r\r\n"),
                ElementsAre("02:00:00.002 2 second ~", "02:00:00.001 1 first"));
    EXPECT_THAT(entries(first + " " + thread_piece(1) + second + " first\r\n" + thread_piece(2) + "second\r\n"),
                ElementsAre("02:00:00.001 1 first ~", "02:00:00.002 2 second"));
    EXPECT_THAT(entries(first + " " + second + " " + thread_piece(2) + "second\r\n" + thread_piece(1) + "first\r\n"),
                ElementsAre("02:00:00.002 2 second ~", "02:00:00.001 1 first"));
}

TEST(Library_log_test, a_line_that_was_never_finished_does_not_shift_the_others)
{
    std::string text = "Mon Nov 16 02:00:00.000 " + thread_piece(9);
    for (int i = 1; i < 12; ++i) {
        text += line_at("02:00:01.000", static_cast<unsigned>(i), std::to_string(i));
    }
    const auto lines = entries(text);
    ASSERT_EQ(lines.size(), 11U);
    EXPECT_EQ(lines[0], "02:00:01.000 1 1 ~");
    EXPECT_EQ(lines[10], "02:00:01.000 11 11");
    EXPECT_THAT(entries("no log at all\nMon Nov\n"), ElementsAre("- - no log at all ~", "- - Mon Nov ~"));
}

TEST(Library_log_test, the_year_is_the_latest_that_has_the_weekday)
{
    const auto date_of = [](const std::string& day, int date) {
        std::string found;
        vyra_tool::Log_parser parser(date);
        parser.read(day + " 00:00:00.000 " + thread_piece(1) + "m\n",
                    [&](const vyra_tool::Log_entry& entry) { found = entry.time.substr(0, 10); });
        return found;
    };
    EXPECT_EQ(date_of("Mon Nov 16", 20261116), "2026-11-16");
    EXPECT_EQ(date_of("Mon Nov 16", 20261115), "2026-11-16") << "another time zone's";
    EXPECT_EQ(date_of("Mon Nov 16", 20261101), "2020-11-16");
    EXPECT_EQ(date_of("Thu Dec 31", 20270101), "2026-12-31");
    EXPECT_EQ(date_of("Fri Jan  1", 20270102), "2027-01-01");
    EXPECT_EQ(date_of("Thu Feb 29", 20261120), "2024-02-29");
}

class Log_test : public In_process_test {
protected:
    Log_test() : folder_(std::filesystem::temp_directory_path() / "vyra_log")
    {
        std::filesystem::create_directories(folder_);
    }
    ~Log_test() override
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::string path(const std::string& name) const { return (folder_ / name).generic_u8string(); }
    std::string file() const { return path("vyrabrenvozulta.log"); }
    std::string older() const { return path("vyrabrenvozulta2.log"); }

    static void append(const std::string& file, const std::string& text)
    {
        std::ofstream(std::filesystem::u8path(file), std::ios::binary | std::ios::app) << text;
    }

    // The lines without the times.
    std::vector<std::string> lines(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"log", "--file", file()});
        const Result result = run_in_process(arguments);
        EXPECT_EQ(result.code, 0);
        std::vector<std::string> all;
        std::istringstream text(result.out);
        for (std::string line; std::getline(text, line);) {
            all.push_back(line.substr(line.find("thread")));
        }
        return all;
    }

private:
    std::filesystem::path folder_;
};

TEST_F(Log_test, reads_both_generations_and_folds_what_comes_again)
{
    append(older(), line_at("02:00:00.000", 1, "older"));
    for (int i = 0; i < 1000; ++i) {
        append(i < 500 ? older() : file(), line_at("02:00:01.500", static_cast<unsigned>(i % 2), "again"));
    }
    append(file(), line_at("02:00:02.000", 3, "newer"));
    EXPECT_THAT(lines({}), ElementsAre("thread 1  older", "thread 0  again  (1000 times, the last at 02:00:01.500)",
                                       "thread 3  newer"));
    EXPECT_THAT(lines({"--tail", "1"}), ElementsAre("thread 3  newer"));
    EXPECT_THAT(run_in_process({"log", "--file", file()}).out, HasSubstr("-11-16 02:00:00.000  thread 1  older\n"));
}

TEST_F(Log_test, without_tail_the_last_50_lines)
{
    for (int i = 0; i < 60; ++i) {
        append(file(), line_at("02:00:00.000", 1, std::to_string(i)));
    }
    EXPECT_EQ(lines({}).size(), 50U);
    EXPECT_EQ(lines({}).front(), "thread 1  10");
    EXPECT_EQ(lines({"--tail", "0"}).size(), 60U);
    EXPECT_EQ(lines({"--since", "2000-01-01"}).size(), 60U);
    for (const char* wrong : {"x", "-1", "1.5"}) {
        EXPECT_EQ(run_in_process({"log", "--file", file(), "--tail", wrong}).code, 2) << wrong;
    }
}

TEST_F(Log_test, since_a_time_or_an_age)
{
    append(file(), line_at("02:00:00.000", 1, "first") + line_at("02:30:00.000", 1, "second"));
    vyra_tool::Log_parser parser(vyra_tool::local_date());
    std::string day;
    parser.read(line_at("02:30:00.000", 1, ""), [](const auto&) {});
    parser.read(line_at("02:30:00.000", 1, "m"), [&](const auto& entry) { day = entry.time.substr(0, 10); });
    EXPECT_THAT(lines({"--since", day + "T02:30"}), ElementsAre("thread 1  second"));
    EXPECT_THAT(lines({"--since", day + " 02:30:01"}), IsEmpty());
    EXPECT_THAT(lines({"--since", day}), ElementsAre("thread 1  first", "thread 1  second"));
    EXPECT_THAT(lines({"--since", "12000d"}), ElementsAre("thread 1  first", "thread 1  second"));
    EXPECT_THAT(lines({"--since", "0s"}), IsEmpty());
    for (const char* wrong : {"yesterday", "10", "-1m", "10x", "10mm", "2026-11", "2026-11-16T02:3", "2026/11/16"}) {
        EXPECT_EQ(run_in_process({"log", "--file", file(), "--since", wrong}).code, 2) << wrong;
    }
}

TEST_F(Log_test, as_json_one_object_a_line)
{
    append(file(), line_at("02:00:00.000", 7, "open_device:    Error=9110: Error 9110 RQ7-3050 #1") +
                       line_at("02:00:00.100", 7, "--Error : QXDR_OpenDevice ret = 4 ") +
                       line_at("02:00:00.200", 7, "--Error : QXDR_OpenDevice ret = 4 "));
    std::istringstream text(run_in_process({"log", "--file", file(), "--json"}).out);
    std::string line;
    std::getline(text, line);
    Json first = Json::parse(line);
    EXPECT_THAT(first["time"].get<std::string>(), HasSubstr("-11-16T02:00:00.000"));
    first.erase("time");
    EXPECT_EQ(first, (Json{{"thread", 7},
                           {"message", "open_device:    Error=9110: Error 9110 RQ7-3050 #1"},
                           {"code", 9110},
                           {"name", "VYRA_SCN_UNAVAILABLE"},
                           {"times", 1},
                           {"mixed", false}}));
    std::getline(text, line);
    const Json second = Json::parse(line);
    EXPECT_EQ(second["driver_result"], 4);
    EXPECT_EQ(second["times"], 2);
    EXPECT_THAT(second["until"].get<std::string>(), HasSubstr("T02:00:00.200"));
}

TEST_F(Log_test, follow_prints_what_comes_across_a_change_of_generations)
{
    append(file(), line_at("02:00:00.000", 1, "before"));
    vyra_tool::Log_files files(file());
    vyra_tool::Log_parser parser(today);
    std::vector<std::string> messages;
    const auto read = [&](std::string_view bytes) {
        parser.read(bytes, [&](const auto& entry) { messages.push_back(entry.message); });
    };
    files.read_all(read);
    append(file(), line_at("02:00:01.000", 1, "half a line").substr(0, 50));
    files.read_added(read);
    append(file(), line_at("02:00:01.000", 1, "half a line").substr(50));
    std::filesystem::rename(std::filesystem::u8path(file()), std::filesystem::u8path(older()));
    append(file(), line_at("02:00:02.000", 1, "new"));
    files.read_added(read);
    files.read_added(read);
    EXPECT_THAT(messages, ElementsAre("before", "half a line", "new"));
}

// The messages that a follower reads, with what happens between two looks.
class Followed_log {
public:
    explicit Followed_log(const std::string& file) : files_(file), parser_(today)
    {
        files_.read_all([this](std::string_view bytes) { read(bytes); });
    }

    std::vector<std::string> look()
    {
        messages_.clear();
        files_.read_added([this](std::string_view bytes) { read(bytes); });
        return messages_;
    }

private:
    void read(std::string_view bytes)
    {
        parser_.read(bytes, [this](const auto& entry) { messages_.push_back(entry.message); });
    }

    vyra_tool::Log_files files_;
    vyra_tool::Log_parser parser_;
    std::vector<std::string> messages_;
};

TEST_F(Log_test, follow_counts_what_was_shown_and_comes_again)
{
    std::FILE* const results = std::fopen(path("results").c_str(), "wb");
    vyra_tool::Output output(results, false);
    vyra_tool::Log_printer printer({}, 0, output);
    vyra_tool::Log_parser parser(today);
    const auto look = [&](const std::string& lines) {
        parser.read(lines, [&](vyra_tool::Log_entry entry) { printer.add(std::move(entry)); });
        printer.print_new();
    };
    look(line_at("02:00:00.000", 1, "again"));
    look(line_at("02:00:01.000", 1, "again"));
    look({});
    look(line_at("02:00:02.000", 1, "again"));
    look(line_at("02:00:03.000", 1, "other"));
    look(line_at("02:00:04.000", 1, "other"));
    printer.print();
    std::fclose(results);
    const Bytes bytes = read_bytes(path("results"));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              "2026-11-16 02:00:00.000  thread 1  again\n"
              "2026-11-16 02:00:01.000  thread 1  again  (2 times, the last at 02:00:02.000)\n"
              "2026-11-16 02:00:03.000  thread 1  other\n"
              "2026-11-16 02:00:04.000  thread 1  other\n");
}

TEST_F(Log_test, follow_repeats_nothing_when_the_log_is_out_of_reach_for_a_moment)
{
    const std::string lines = line_at("02:00:00.000", 1, "old") + line_at("02:00:00.500", 1, "older");
    append(older(), lines + lines);
    append(file(), line_at("02:00:01.000", 1, "read"));
    Followed_log log(file());
    const auto here = std::filesystem::u8path(file());
    const auto away = std::filesystem::u8path(path("away"));
    std::filesystem::rename(here, away);
    EXPECT_THAT(log.look(), IsEmpty());
    std::filesystem::rename(away, here);
    EXPECT_THAT(log.look(), IsEmpty());
    append(file(), line_at("02:00:02.000", 1, "new"));
    EXPECT_THAT(log.look(), ElementsAre("new"));
}

TEST_F(Log_test, follow_misses_nothing_of_a_new_generation_that_has_outgrown_the_old_one)
{
    append(file(), line_at("02:00:00.000", 1, "read"));
    Followed_log log(file());
    append(file(), line_at("02:00:01.000", 1, "the old one's last"));
    std::filesystem::rename(std::filesystem::u8path(file()), std::filesystem::u8path(older()));
    append(file(), line_at("02:00:02.000", 1, "first") + line_at("02:00:02.100", 1, std::string(1000, '-')) +
                       line_at("02:00:02.200", 1, "last"));
    EXPECT_THAT(log.look(), ElementsAre("the old one's last", "first", std::string(1000, '-'), "last"));
    EXPECT_THAT(log.look(), IsEmpty());
}

TEST_F(Log_test, follow_waits_for_a_log_and_ends_with_an_interrupt)
{
    Background_run none({"log", "--file", file(), "--follow"});
    vyra_tool::request_interrupt();
    EXPECT_EQ(none.finish().code, 0);
    append(file(), line_at("02:00:00.000", 1, "the first"));
    vyra_tool::request_interrupt();
    const Result result = run_in_process({"log", "--file", file(), "--follow"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("the first"));
}

TEST_F(Log_test, path_and_a_log_that_is_not_there)
{
    EXPECT_EQ(run_in_process({"log", "--file", file(), "--path"}).out,
              std::filesystem::u8path(file()).u8string() + "\n");
    EXPECT_EQ(run_in_process({"log", "--file", file()}).code, 5);
    append(file(), "x");
    const Json path = Json::parse(run_in_process({"log", "--file", file(), "--path", "--json"}).out);
    EXPECT_EQ(path["bytes"], 1);
    EXPECT_THAT(path["older"].get<std::string>(), HasSubstr("vyrabrenvozulta2.log"));
    EXPECT_THAT(run_in_process({"log", "--path"}).out, HasSubstr("\\Orvane\\Halvern SDK\\vyrabrenvozulta.log\n"));
}

}  // namespace
}  // namespace tool_tests
