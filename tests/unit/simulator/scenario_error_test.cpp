// Messages about bad scenarios: file, line and field, for each way of being wrong.
#include "driver_stage.h"

namespace simulator_test {
namespace {

class Scenario_error_test : public Driver_test {};

TEST_F(Scenario_error_test, syntax)
{
    EXPECT_EQ(load_error(""), "dir/s.json:1: is empty");
    EXPECT_EQ(load_error(" \n\t"), "dir/s.json:1: is empty");
    EXPECT_THAT(load_error("{\n\"frame_rate\": 1,\n}"), testing::StartsWith("dir/s.json:3: syntax error"));
    EXPECT_THAT(load_error("{\n\"frame_rate\":\n\n"), testing::StartsWith("dir/s.json:3: syntax error"));
    EXPECT_THAT(load_error("{}\n{}"), testing::StartsWith("dir/s.json:2: "));
    EXPECT_THAT(load_error("{\"frame_rate\": 1e999}"), testing::StartsWith("dir/s.json:1: "));
    EXPECT_EQ(load_error(std::string(100'000, '[')), "dir/s.json:1: is nested too deeply");
    EXPECT_EQ(load_error("[]"), "dir/s.json:1: is not an object");
}

TEST_F(Scenario_error_test, lines_are_those_of_the_value)
{
    EXPECT_EQ(load_error("{\n\n\"frame_rate\":\n-1\n}"), "dir/s.json:4: frame_rate: is not from 0 to 1000");
    EXPECT_EQ(load_error("{\"frame_rate\": -1\n\n}"), "dir/s.json:1: frame_rate: is not from 0 to 1000");
    EXPECT_EQ(load_error("{\n\"images\":\n\n{}}"), "dir/s.json:4: images.source: is missing");
    EXPECT_EQ(load_error("{\r\n\"frame_rate\": true\r\n}"), "dir/s.json:2: frame_rate: is not a number");
}

TEST_F(Scenario_error_test, fields_unknown_or_there_twice)
{
    EXPECT_EQ(load_error("{\n\"frames\": 1}"), "dir/s.json:2: frames: unknown field");
    EXPECT_EQ(load_error("{\"scanners\": [{\"name\": \"A\"},\n {\"name\": \"B\",\n \"sn\": 1}]}"),
              "dir/s.json:3: scanners[1].sn: unknown field");
    EXPECT_EQ(load_error("{\"frame_rate\": 1,\n\"frame_rate\": 2}"), "dir/s.json:2: frame_rate: is there twice");
    EXPECT_EQ(load_error(R"({"images": {"source": "synthetic", "folder": "x"}})"),
              "dir/s.json:1: images.folder: unknown field");
}

TEST_F(Scenario_error_test, scanners)
{
    const auto scanner_error = [](const std::string& fields) {
        return load_error("{\"scanners\": [\n{" + fields + "}]}");
    };
    const std::string at = "dir/s.json:2: scanners[0]";
    EXPECT_EQ(scanner_error(""), at + ".name: is missing");
    EXPECT_EQ(scanner_error(R"("name": 5)"), at + ".name: is not a text");
    EXPECT_EQ(scanner_error(R"("name": "")"), at + ".name: has 0 characters, not 1 to 559");
    EXPECT_EQ(scanner_error("\"name\": \"" + std::string(560, 'n') + "\""),
              at + ".name: has 560 characters, not 1 to 559");
    EXPECT_EQ(scanner_error(R"("name": "a\u0000b")"), at + ".name: holds a zero character");
    EXPECT_EQ(scanner_error(R"("name": "A", "serial_number": "1234567890123")"),
              at + ".serial_number: has 13 characters, not 0 to 12");
    for (const char* version : {"2", "2.5", "a.b.c", "2.5.bb", "128.0.a", "0.-129.a", "2.5.b ", "4294967298.5.b",
                                "2.99999999999.b", " 2.5.b", "2 .5.b", "+2.5.b", ".5.b"}) {
        EXPECT_THAT(scanner_error(std::string(R"("name": "A", "version": ")") + version + "\""),
                    testing::StartsWith(at + ".version: is not like"))
            << version;
    }
    EXPECT_EQ(scanner_error(R"("name": "A", "port_type": -1)"), at + ".port_type: is not from 0 to 4294967295");
    EXPECT_EQ(scanner_error(R"("name": "A", "port_type": 18446744073709551615)"),
              at + ".port_type: is not from 0 to 4294967295");
    EXPECT_EQ(scanner_error(R"("name": "A", "port_type": 1.5)"), at + ".port_type: is not a whole number");
    EXPECT_EQ(scanner_error(R"("name": "A", "attached": 1)"), at + ".attached: is not true or false");
    EXPECT_EQ(scanner_error(R"("name": "A", "container": {})"), at + ".container: has to have one of file and size");
    EXPECT_EQ(scanner_error(R"("name": "A", "container": {"file": "nowhere", "seed": 1})"),
              at + ".container.seed: is for size: a file has its bytes already");
    EXPECT_THAT(scanner_error(R"("name": "A", "container": {"file": "nowhere"})"),
                testing::StartsWith(at + ".container.file: cannot read "));
    EXPECT_EQ(load_error(R"({"scanners": [{"name": "A"}, {"name": "A"}]})"),
              "dir/s.json:1: scanners[1].name: names another scanner already");
    EXPECT_EQ(load_error(R"({"scanners": {}})"), "dir/s.json:1: scanners: is not a list");
    EXPECT_EQ(load_error(R"({"scanners": ["A"]})"), "dir/s.json:1: scanners[0]: is not an object");
}

TEST_F(Scenario_error_test, configurations)
{
    const auto config_error = [](const std::string& fields) {
        return load_error("{\"capture_configs\": [{" + fields + "}]}");
    };
    const std::string at = "dir/s.json:1: capture_configs[0]";
    EXPECT_EQ(config_error(R"("width": 5)"), at + ".number: is missing");
    EXPECT_EQ(config_error(R"("number": 256)"), at + ".number: is not from 0 to 255");
    EXPECT_EQ(config_error(R"("number": 2, "width": 5, "height": 5)"),
              at + ": needs description, width and height: 2 has no defaults");
    EXPECT_EQ(config_error(R"("number": 1, "width": 65536)"), at + ".width: is not from 1 to 65535");
    EXPECT_EQ(config_error(R"("number": 1, "height": 0)"), at + ".height: is not from 1 to 65535");
    EXPECT_EQ(config_error(R"("number": 1, "width": 65535, "height": 65535)"), at + ": has more than 67108864 pixels");
}

TEST_F(Scenario_error_test, images)
{
    EXPECT_EQ(load_error(R"({"images": []})"), "dir/s.json:1: images: is not an object");
    EXPECT_EQ(load_error(R"({"images": {"source": "camera"}})"),
              "dir/s.json:1: images.source: is not \"synthetic\" or \"folder\"");
    EXPECT_EQ(load_error(R"({"images": {"source": "folder"}})"), "dir/s.json:1: images.folder: is missing");
    EXPECT_THAT(load_error(R"({"images": {"source": "folder", "folder": "nowhere"}})"),
                testing::StartsWith("dir/s.json:1: images.folder: cannot read folder "));
}

TEST_F(Scenario_error_test, faults)
{
    const auto fault_error = [](const std::string& fields) { return load_error("{\"faults\": [{" + fields + "}]}"); };
    const std::string at = "dir/s.json:1: faults[0]";
    EXPECT_EQ(fault_error(R"("result": 1)"), at + ".function: is missing");
    EXPECT_EQ(fault_error(R"("function": "QXDR_Open", "result": 1)"),
              at + ".function: names no function of the driver");
    EXPECT_EQ(fault_error(R"("function": "QXDR_OpenDevice", "result": 20)"), at + ".result: is not from 0 to 19");
    EXPECT_EQ(fault_error(R"("function": "QXDR_OpenDevice", "times": 1)"), at + ".result: is missing");
    EXPECT_EQ(fault_error(R"("function": "QXDR_OpenDevice", "result": 1, "times": 0)"),
              at + ".times: is not from 1 to 1000000000");
    EXPECT_EQ(fault_error(R"("function": "QXDR_OpenDevice", "result": 1, "times": "often")"),
              at + ".times: is not a whole number or \"always\"");
}

TEST_F(Scenario_error_test, timeline_restart_and_firmware)
{
    const auto entry_error = [](const std::string& fields) { return load_error("{\"timeline\": [{" + fields + "}]}"); };
    const std::string at = "dir/s.json:1: timeline[0]";
    const std::string when = at + ": has to have at_ms or one of after_call, on_entry and on_return";
    const std::string what = at + ": has to have one of plug, unplug and image";
    EXPECT_EQ(entry_error(R"("plug": "A")"), when);
    EXPECT_EQ(entry_error(R"("on_entry": {"function": "QXDR_Release"}, "on_return": {"function": "QXDR_Release"})"),
              when);
    EXPECT_EQ(entry_error(R"("at_ms": 1)"), what);
    EXPECT_EQ(entry_error(R"("at_ms": 1, "plug": "A", "unplug": "A")"), what);
    EXPECT_EQ(entry_error(R"("at_ms": 1, "plug": "A", "image": {"width": 1, "height": 1})"), what);
    EXPECT_EQ(entry_error(R"("at_ms": 1, "on_entry": {"function": "QXDR_Release"}, "plug": "A")"),
              at + ".at_ms: is for after_call: what happens inside a call does not wait");
    EXPECT_EQ(entry_error(R"("on_return": {"function": "QXDR_Nothing"}, "plug": "A")"),
              at + ".on_return.function: names no function of the driver");
    EXPECT_EQ(entry_error(R"("at_ms": 1, "late_ms": 1, "image": {"width": 1, "height": 1})"),
              at + ".late_ms: is for plug and unplug");
    EXPECT_EQ(entry_error(R"("at_ms": 1, "image": {"width": 1})"), at + ".image: needs width and height");
    EXPECT_EQ(entry_error(R"("at_ms": 1, "image": {"width": 65536, "height": 1})"),
              at + ".image.width: is not from 0 to 65535");
    EXPECT_EQ(entry_error(R"("at_ms": 1, "image": {"width": 65535, "height": 65535})"),
              at + ".image: has more than 67108864 pixels, and is not null");
    EXPECT_EQ(entry_error(R"("after_call": {"count": 1}, "plug": "A")"), at + ".after_call.function: is missing");
    EXPECT_EQ(entry_error(R"("after_call": {"function": "QXDR_OpenDevice", "count": 0}, "plug": "A")"),
              at + ".after_call.count: is not from 1 to 1000000000");
    EXPECT_EQ(load_error(R"({"restart": {"delay": 1}})"), "dir/s.json:1: restart.delay: unknown field");
    EXPECT_EQ(load_error(R"({"firmware": {"fail_result": 0}})"),
              "dir/s.json:1: firmware.fail_result: is not from 1 to 19");
    EXPECT_EQ(load_error(R"({"list_count": {}})"), "dir/s.json:1: list_count.count: is missing");
}

TEST_F(Scenario_error_test, a_timeline_of_a_scanner_that_is_not_there)
{
    const auto entry_error = [](const std::string& fields) {
        return load_error("{\"scanners\": [{\"name\": \"A\"}], \"timeline\": [\n{\"at_ms\": 1, " + fields + "}]}");
    };
    const std::string stranger =
        ": names no scanner of the scenario; with \"new\": true it is one that nothing else is said of";
    for (const char* name : {"a", "A ", "RQ7-3050 #1"}) {
        EXPECT_EQ(entry_error("\"plug\": \"" + std::string(name) + "\""), "dir/s.json:2: timeline[0].plug" + stranger);
        EXPECT_EQ(entry_error("\"unplug\": \"" + std::string(name) + "\""),
                  "dir/s.json:2: timeline[0].unplug" + stranger);
        EXPECT_EQ(entry_error("\"plug\": \"" + std::string(name) + R"(", "new": false)"),
                  "dir/s.json:2: timeline[0].plug" + stranger);
    }
    EXPECT_EQ(entry_error(R"("new": true, "image": {"width": 1, "height": 1})"),
              "dir/s.json:2: timeline[0].new: is for plug and unplug");
    load(R"({"timeline": [{"at_ms": 9000, "plug": "B", "new": true}, {"at_ms": 9001, "unplug": "B"},
                          {"at_ms": 9002, "unplug": "RQ7-3050 #1"}]})");
}

TEST_F(Scenario_error_test, is_told_in_utf_8)
{
    const std::string unknown = "\xEF\xBF\xBD";
    EXPECT_EQ(load_error("{\"n\xE9\": 1}").find('\xE9'), std::string::npos);
    EXPECT_THAT(load_error("{\"n\xC3\xA9\xE9\": 1}"), testing::HasSubstr("n\xC3\xA9" + unknown));
    for (const char* bytes : {"\x80", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
        EXPECT_THAT(load_error("{\"" + std::string(bytes) + "\": 1}"), testing::HasSubstr(unknown));
    }
    EXPECT_THAT(load_error("{\"\xE2\x82\xAC \xF0\x9F\x91\x8D\": 1}"),
                testing::HasSubstr("\xE2\x82\xAC \xF0\x9F\x91\x8D: unknown field"));
}

TEST_F(Scenario_error_test, liberties)
{
    EXPECT_EQ(load_error(R"({"reuse_handles": "often"})"),
              "dir/s.json:1: reuse_handles: is not \"never\", \"after_close\" or \"at_once\"");
    EXPECT_EQ(load_error(R"({"reuse_handles": true})"), "dir/s.json:1: reuse_handles: is not a text");
    EXPECT_EQ(load_error(R"({"reinitialize_result": 20})"), "dir/s.json:1: reinitialize_result: is not from 0 to 19");
    EXPECT_EQ(load_error(R"({"reopen_result": -1})"), "dir/s.json:1: reopen_result: is not from 0 to 19");
    EXPECT_EQ(load_error(R"({"stop_patience_ms": "always"})"),
              "dir/s.json:1: stop_patience_ms: is not a whole number or \"unlimited\"");
    EXPECT_EQ(load_error(R"({"faults": [{"function": "QXDR_OpenDevice", "return_delay_ms": -1}]})"),
              "dir/s.json:1: faults[0].return_delay_ms: is not from 0 to 86400000");
}

TEST_F(Scenario_error_test, a_failed_load_changes_nothing)
{
    load(R"({"scanners": [{"name": "A"}]})");
    EXPECT_NE(load_error(R"({"scanners": [{"name": "B"}], "frames": 1})"), "");
    initialize();
    open("A");
    EXPECT_FALSE(brenvozulta_sim_is_attached("B"));
}

}  // namespace
}  // namespace simulator_test
