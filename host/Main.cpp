#include "host/Application.h"

int main(int argc, char** argv) {
  return ravelin::RunApplication(argc, argv);
}
