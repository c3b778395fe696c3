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
  std::map<std::string, std::string> instead;  // replies to lines, in place of the usual ones
  std::vector<std::string> lines;              // received, without line ends

  std::string Answer(const std::string& line) {
    lines.push_back(line);
    if (const auto own = instead.find(line); own != instead.end()) return own->second;
    const std::string value = line.size() > 3 ? line.substr(3) : "";
    switch (line.size() > 1 ? line[1] : 0) {
      case 'f':
        return Done("get_freq:\nFrequency: " + std::to_string(freq[vfo]));
      case 'm':
        return Done("get_mode:\nMode: " + mode + "\nPassband: 2400");
      case 't':
        return Done("get_ptt:\nPTT: " + std::to_string(keyed));
      case 's':
        return Done("get_split_vfo:\nSplit: " + std::to_string(split) + "\nTX VFO: VFOB");
      case 'i':
        return Done("get_split_freq:\nTX Frequency: " + std::to_string(freq["VFOB"]));
      case 'v':
        return Done("get_vfo:\nVFO: " + vfo);
      case 'F':
        freq[vfo] = std::stoi(value);
        return Done("set_freq: " + value);
      case 'V':
        vfo = value;
        return Done("set_vfo: " + value);
      case 'M':
        mode = value.substr(0, value.find(' '));
        return Done("set_mode: " + value);
      case 'T':
        keyed = std::stoi(value);
        return Done("set_ptt: " + value);
      default:
        break;
    }
    if (line.starts_with("+\\get_vfo_info ")) {
      return Done("get_vfo_info: " + line.substr(15) +
                  "\nFreq: " + std::to_string(freq[line.substr(15)]) + "\nMode: USB");
    }
    if (line == "+\\dump_caps") return Done("dump_caps:\nModel name:\tDummy\nMfg name:\tHamlib");
    return "unknown";
  }

  static std::string Done(const std::string& text) { return text + "\nRPRT 0\n"; }

  // What was sent but the polls.
  std::vector<std::string> Writes() const {
    std::vector<std::string> writes;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(writes),
                 [](const std::string& l) { return std::string("FVMT").find(l[1]) < 4; });
    return writes;
  }
  // Lines from the last `from` on, to see what came between.
  std::vector<std::string> Since(const std::string& from) const {
    const auto last = std::find(lines.rbegin(), lines.rend(), from);
    return {last == lines.rend() ? lines.end() : last.base() - 1, lines.end()};
  }
};

}  // namespace velt
