#include "identity.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>

namespace brenvozulta_simulator {
namespace {

constexpr std::size_t default_container_size = 4096;
constexpr std::uint32_t default_port_type = 3;

std::string default_serial_number(const std::string& name)
{
    char text[sizeof(DriverDeviceInfo::serial_number) + 1];
    std::snprintf(text, sizeof text, "RQ7%09u", static_cast<unsigned>(stable_hash(name) % 1000000000U));
    return text;
}

}  // namespace

Identity default_identity(const std::string& name)
{
    Identity identity{};
    identity.name = name;
    identity.info.port_type = default_port_type;
    set_serial_number(identity.info, default_serial_number(name));
    identity.info.version_major = 2;
    identity.info.version_minor = 5;
    identity.info.version_revision = 'b';
    identity.container = generated_container(default_container_size, stable_hash(name));
    return identity;
}

std::shared_ptr<const std::vector<std::uint8_t>> generated_container(std::size_t size, std::uint64_t seed)
{
    std::vector<std::uint8_t> bytes(size);
    char header[48];
    std::snprintf(header, sizeof header, "RQ7 PARAMETERS %016llx\n", static_cast<unsigned long long>(seed));
    std::mt19937_64 random(seed);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<std::uint8_t>(random() >> 56); });
    std::memcpy(bytes.data(), header, std::min(size, std::strlen(header)));
    return std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
}

std::uint64_t stable_hash(const std::string& text)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    }
    return hash;
}

bool valid_name(const char* name)
{
    return name != nullptr && *name != '\0' && std::strlen(name) <= name_max;
}

void set_serial_number(DriverDeviceInfo& info, const std::string& serial_number)
{
    std::memset(info.serial_number, 0, sizeof info.serial_number);
    std::memcpy(info.serial_number, serial_number.data(), std::min(serial_number.size(), sizeof info.serial_number));
}

}  // namespace brenvozulta_simulator
