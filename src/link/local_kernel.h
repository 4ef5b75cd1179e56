// The kernel half of the link's calls kept inside this process: a global atom table, named
// mappings of paging-file memory, and their views. The fake module and the bridge transport
// both stand on it, and find the block from the atom in wParam just as the module does:
// atom -> name -> mapping -> view.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "link/link_transport.h"

namespace quilmark {

class Local_Kernel_Transport : public Link_Transport {
  public:
    uint32_t Register_Message(const char* name) override;
    uint16_t Add_Atom(const char* name) override;
    void Delete_Atom(uint16_t atom) override;
    uint64_t Create_Mapping(const char* name, uint32_t size) override;
    uint8_t* Map_View(uint64_t mapping) override;
    void Unmap_View(uint8_t* view) override;
    void Close_Handle(uint64_t handle) override;
    uint32_t Last_Error() override { return last_error; }

    // The block named by the atom in wParam, or nullptr when the atom or the mapping is
    // gone; size gets the mapping's size. This is how the module finds the list.
    uint8_t* Find_Block(uint64_t wparam, uint32_t& size);
    // What is held: atoms with references, open mapping handles, mapped views.
    size_t Atoms_Held() const { return atoms.size(); }
    size_t Handles_Held() const { return handles.size(); }
    size_t Views_Held() const { return views.size(); }
    std::string Atom_Name(uint16_t atom) const;

  protected:
    uint32_t last_error = 0;

  private:
    struct Atom_Rec {
        std::string name;
        uint32_t references = 0;
    };
    using Memory = std::shared_ptr<std::vector<uint8_t>>;
    struct Mapping_Rec {
        std::string name;
        Memory memory;
    };

    std::map<uint16_t, Atom_Rec> atoms;
    std::map<uint64_t, Mapping_Rec> handles;
    std::map<uint8_t*, Memory> views;
    std::map<std::string, uint32_t> messages;
    uint64_t next_handle = 0x100;
};

} // namespace quilmark
