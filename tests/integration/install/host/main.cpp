// A host program as its author writes it: prints the product name of the machine's baseboard.
#include <velmora/velmora.h>

#include <iostream>
#include <string>

int main() {
  CBaseboard board;
  const std::wstring product = board.GetBaseboardProduct();
  std::wcout << (product.empty() ? L"not reported" : product) << L'\n';
}
