// A rig that answers the server's extended commands from memory and keeps what it was sent.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace velt {

struct FakeRig {
  std::map<std::string, int> freq{{"VFOA", 14074000}, {"VFOB", 7074000}};
  std::string vfo = "VFOA";
  std::string mode = "USB";
  int keyed = 0;
  int split = 0;
  // Replies to lines, or to all that begin with two letters, in place of the usual ones.
  std::map<std::string, std::string> instead;
  std::vector<std::string> lines;  // received, without line ends

  std::string Answer(const std::string& line) {
    lines.push_back(line);
    for (const std::string& key : {line, line.substr(0, 2)}) {
      if (instead.contains(key)) return instead.at(key);
    }
    const std::string value = line.size() > 3 ? line.substr(3) : "";
    const std::map<std::string, std::string> replies = {
        {"+f", "get_freq:\nFrequency: " + std::to_string(freq[vfo])},
        {"+m", "get_mode:\nMode: " + mode + "\nPassband: 2400"},
        {"+t", "get_ptt:\nPTT: " + std::to_string(keyed)},
        {"+s", "get_split_vfo:\nSplit: " + std::to_string(split) + "\nTX VFO: VFOB"},
        {"+i", "get_split_freq:\nTX Frequency: " + std::to_string(freq["VFOB"])},
        {"+v", "get_vfo:\nVFO: " + vfo},
        {"+F", "set_freq: " + value},
        {"+V", "set_vfo: " + value},
        {"+M", "set_mode: " + value},
        {"+T", "set_ptt: " + value},
        {"+\\get_vfo_info VFOA", "get_vfo_info: VFOA\nFreq: " + std::to_string(freq["VFOA"])},
        {"+\\get_vfo_info VFOB", "get_vfo_info: VFOB\nFreq: " + std::to_string(freq["VFOB"])},
        {"+\\get_powerstat", "get_powerstat:\nPower Status: 1"},
        {"+\\dump_caps", "dump_caps:\nModel name:\tDummy\nMfg name:\tHamlib"}};
    const auto reply = replies.find(line.starts_with("+\\") ? line : line.substr(0, 2));
    if (reply == replies.end()) return "unknown";
    if (line.starts_with("+F ")) freq[vfo] = std::stoi(value);
    if (line.starts_with("+V ")) vfo = value;
    if (line.starts_with("+M ")) mode = value.substr(0, value.find(' '));
    if (line.starts_with("+T ")) keyed = std::stoi(value);
    return Done(reply->second);
  }
  static std::string Done(const std::string& text) { return text + "\nRPRT 0\n"; }
  static std::string Error(const std::string& echo, int code) {
    return echo + "\nRPRT " + std::to_string(code) + "\n";
  }

  // What was sent but the polls.
  std::vector<std::string> Writes() const {
    std::vector<std::string> writes;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(writes),
                 [](const std::string& l) { return std::string("FVMT").find(l[1]) < 4; });
    return writes;
  }
};

}  // namespace velt
