// The keys of the dictionaries that `SNUtils` makes: one family for each level, each a type of its
// own, so that a key of one level is not taken for a key of another.
#pragma once

#include "Support/PropertyListKey.h"

namespace lanternfold {

/// What the key families have in common: a key is a text, which dictionaries borrow.
class SNUtilsKey : public LiteralText {
 public:
  constexpr explicit SNUtilsKey(LiteralText text) : LiteralText(text) {}
};

/// Keys of one interface dictionary.
class SNUtilsInetInterfacesKey : public SNUtilsKey {
 public:
  using SNUtilsKey::SNUtilsKey;

  static const SNUtilsInetInterfacesKey name;     ///< string: the kernel's name
  static const SNUtilsInetInterfacesKey active;   ///< boolean: carries an address
  static const SNUtilsInetInterfacesKey ipv4;     ///< list of address dictionaries
  static const SNUtilsInetInterfacesKey ipv6;     ///< list of address dictionaries, always empty
  static const SNUtilsInetInterfacesKey metrics;  ///< metrics dictionary, empty when unknown
};

inline constexpr SNUtilsInetInterfacesKey SNUtilsInetInterfacesKey::name{LiteralText("name")};
inline constexpr SNUtilsInetInterfacesKey SNUtilsInetInterfacesKey::active{LiteralText("active")};
inline constexpr SNUtilsInetInterfacesKey SNUtilsInetInterfacesKey::ipv4{LiteralText("ipv4")};
inline constexpr SNUtilsInetInterfacesKey SNUtilsInetInterfacesKey::ipv6{LiteralText("ipv6")};
inline constexpr SNUtilsInetInterfacesKey SNUtilsInetInterfacesKey::metrics{LiteralText("metrics")};

/// Keys of one address dictionary; all five are always there.
class SNUtilsInetAddressKey : public SNUtilsKey {
 public:
  using SNUtilsKey::SNUtilsKey;

  static const SNUtilsInetAddressKey ip;       ///< string
  static const SNUtilsInetAddressKey netmask;  ///< string
  static const SNUtilsInetAddressKey gateway;  ///< string
  static const SNUtilsInetAddressKey prefix;   ///< number: length in bits
  static const SNUtilsInetAddressKey cidr;     ///< string: for IPv4 gateway "/" prefix
};

inline constexpr SNUtilsInetAddressKey SNUtilsInetAddressKey::ip{LiteralText("ip")};
inline constexpr SNUtilsInetAddressKey SNUtilsInetAddressKey::netmask{LiteralText("netmask")};
inline constexpr SNUtilsInetAddressKey SNUtilsInetAddressKey::gateway{LiteralText("gateway")};
inline constexpr SNUtilsInetAddressKey SNUtilsInetAddressKey::prefix{LiteralText("prefix")};
inline constexpr SNUtilsInetAddressKey SNUtilsInetAddressKey::cidr{LiteralText("cidr")};

/// Keys of one metrics dictionary: unsigned numbers, all eleven always there, and `hwAddress`.
class SNUtilsInterfaceInfoKey : public SNUtilsKey {
 public:
  using SNUtilsKey::SNUtilsKey;

  static const SNUtilsInterfaceInfoKey type;      ///< 8 bits: interface-type code
  static const SNUtilsInterfaceInfoKey physical;  ///< 8 bits
  static const SNUtilsInterfaceInfoKey baudrate;  ///< 64 bits: bit/s, 0 when unknown
  static const SNUtilsInterfaceInfoKey mtu;       ///< 32 bits: bytes
  static const SNUtilsInterfaceInfoKey recvBytes;
  static const SNUtilsInterfaceInfoKey sentBytes;
  static const SNUtilsInterfaceInfoKey recvPackets;
  static const SNUtilsInterfaceInfoKey sentPackets;
  static const SNUtilsInterfaceInfoKey recvErrors;
  static const SNUtilsInterfaceInfoKey sentErrors;
  static const SNUtilsInterfaceInfoKey collisions;
  static const SNUtilsInterfaceInfoKey hwAddress;  ///< string; absent when none or withheld
};

inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::type{LiteralText("type")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::physical{LiteralText("physical")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::baudrate{LiteralText("baudrate")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::mtu{LiteralText("mtu")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::recvBytes{
    LiteralText("recv_bytes")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::sentBytes{
    LiteralText("sent_bytes")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::recvPackets{
    LiteralText("recv_packets")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::sentPackets{
    LiteralText("sent_packets")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::recvErrors{
    LiteralText("recv_errors")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::sentErrors{
    LiteralText("sent_errors")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::collisions{
    LiteralText("collisions")};
inline constexpr SNUtilsInterfaceInfoKey SNUtilsInterfaceInfoKey::hwAddress{
    LiteralText("hw_address")};

}  // namespace lanternfold
