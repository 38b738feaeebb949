/// Asks the library everything that a report tells of the network, so many times in one process: network
/// ROUNDS
///
/// As a host would: each round makes its objects anew. Prints how much came back, so that nothing is left out
/// as unused. With 0 rounds it measures what the process itself costs.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "velmora/networkadapter.h"
#include "velmora/networkcard.h"

namespace {

std::uint64_t sum = 0;  // a program may have what the library may not

void Take(const std::wstring& text) { sum += text.size(); }
void Take(std::uint64_t number) { sum += number; }

void AskCards() {
  CNetworkCard cards;
  Take(static_cast<std::uint64_t>(cards.GetNetworkCardNumbers()));
  for (const auto kind : {NETWORK_CARD_WIRELESS, NETWORK_CARD_WIRED, NETWORK_CARD_MOBILE}) {
    Take(cards.GetHardIDByType(kind));
    Take(cards.GetManufactrue(kind));
    Take(cards.GetDriverVersion(kind));
    Take(cards.GetCaption(kind));
    Take(cards.GetDisplayName(kind));
    Take(cards.GetINF(kind));
    Take(cards.GetProblemCode(kind));
    Take(cards.GetMacAddress(kind));
    Take(cards.GetGUID(kind));
  }
}

void AskAdapter() {
  CNetworkAdapter adapter;
  unsigned int count = 0;
  Take(static_cast<std::uint64_t>(adapter.GetNetworkAdapterNums(count)));
  Take(adapter.GetWifiSwitchState());
  bool is_connected = false;
  bool is_internet_connected = false;
  Take(static_cast<std::uint64_t>(adapter.IsInternetAvailable(is_connected, is_internet_connected)));
  auto state = IP_STATE_READY;
  adapter.CHeckIPReady(state);
  stIP_INFO info;
  Take(static_cast<std::uint64_t>(adapter.GetIpInfo(info)));
  Take(static_cast<std::uint64_t>(adapter.IsUsingModemNetwork()));
  Take(std::uint64_t{adapter.IsModemCardExsit()});
  for (const int index : adapter.GetWireLessIndex()) {
    std::wstring text;
    adapter.GetDisplayNamebyIndex(text, index);
    Take(text);
    adapter.GetMacAddressbyIndex(text, index);
    Take(text);
    adapter.GetDriverVersionbyIndex(text, index);
    Take(text);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const long rounds = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1;
  for (long round = 0; round < rounds; ++round) {
    AskCards();
    AskAdapter();
  }
  std::printf("%llu\n", static_cast<unsigned long long>(sum));
}
