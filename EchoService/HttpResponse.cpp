#include "EchoService/HttpResponse.h"

#include <array>

#include <nlohmann/json.hpp>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

std::string_view reasonOf(int status) {
  switch (status) {
    case 200:
      return "OK";
    case 400:
      return "Bad Request";
    case 404:
      return "Not Found";
    case 405:
      return "Method Not Allowed";
    case 408:
      return "Request Timeout";
    case 411:
      return "Length Required";
    case 413:
      return "Content Too Large";
    case 414:
      return "URI Too Long";
    case 417:
      return "Expectation Failed";
    case 431:
      return "Request Header Fields Too Large";
    case 501:
      return "Not Implemented";
    case 503:
      return "Service Unavailable";
    case 505:
      return "HTTP Version Not Supported";
    default:
      fatalError("an answer has a status that the service does not know");
  }
}

/// The fields that belong to one status only.
std::string_view fieldsOf(int status) {
  switch (status) {
    case 405:
      return "Allow: GET, HEAD\r\n";
    case 503:
      return "Retry-After: 1\r\n";
    default:
      return "";
  }
}

std::string padded(unsigned value) { return (value < 10 ? "0" : "") + std::to_string(value); }

}  // namespace

HttpResponse errorResponse(int status, std::string_view sentence) {
  return {.status = status, .body = nlohmann::json{{"error", sentence}}.dump()};
}

std::string encodeHttpResponse(const HttpResponse& response, HttpBody body, AfterResponse after,
                               std::chrono::system_clock::time_point now) {
  std::string text = "HTTP/1.1 " + std::to_string(response.status) + " ";
  text.append(reasonOf(response.status)).append("\r\nDate: ").append(httpDateText(now));
  text.append("\r\nContent-Type: application/json\r\nContent-Length: ");
  text.append(std::to_string(response.body.size()));
  // Whose address it is changes with the network that somebody is in.
  text.append("\r\nCache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\n");
  text.append(fieldsOf(response.status));
  text.append(after == AfterResponse::close ? "Connection: close\r\n\r\n"
                                            : "Connection: keep-alive\r\n\r\n");
  if (body == HttpBody::sent) text.append(response.body);
  return text;
}

std::string httpDateText(std::chrono::system_clock::time_point moment) {
  using namespace std::chrono;
  constexpr std::array days{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const auto day = floor<std::chrono::days>(moment);
  const year_month_day date(day);
  const hh_mm_ss time(floor<seconds>(moment - day));
  std::string text = days.at(weekday(day).c_encoding());
  text.append(", ").append(padded(static_cast<unsigned>(date.day()))).append(" ");
  text.append(months.at(static_cast<unsigned>(date.month()) - 1)).append(" ");
  text.append(std::to_string(static_cast<int>(date.year()))).append(" ");
  text.append(padded(static_cast<unsigned>(time.hours().count()))).append(":");
  text.append(padded(static_cast<unsigned>(time.minutes().count()))).append(":");
  text.append(padded(static_cast<unsigned>(time.seconds().count()))).append(" GMT");
  return text;
}

}  // namespace lanternfold
