// What the login manager's objects are called on the bus.
#pragma once

namespace lanternfold {

inline constexpr const char* logindName = "org.freedesktop.login1";
inline constexpr const char* logindObject = "/org/freedesktop/login1";
inline constexpr const char* logindManager = "org.freedesktop.login1.Manager";
inline constexpr const char* logindSession = "org.freedesktop.login1.Session";
inline constexpr const char* logindUser = "org.freedesktop.login1.User";
inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

}  // namespace lanternfold
