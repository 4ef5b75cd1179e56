#include "link/local_kernel.h"

#include "link/request_list.h"

namespace quilmark {

namespace {

// Global string atoms take the values from 0xC000 up, as on Windows. Their names compare
// without regard to case there; the link's names are always written the same way.
constexpr uint16_t First_String_Atom = 0xC000;
constexpr uint32_t First_Registered_Message = 0xC000;
constexpr uint32_t Error_Invalid_Handle = 6;

} // namespace

uint32_t Local_Kernel_Transport::Register_Message(const char* name) {
    auto [it, added] = messages.try_emplace(name, 0);
    if (added) {
        it->second = First_Registered_Message + static_cast<uint32_t>(messages.size()) - 1;
    }
    return it->second;
}

uint16_t Local_Kernel_Transport::Add_Atom(const char* name) {
    for (auto& [atom, rec] : atoms) {
        if (rec.name == name) {
            ++rec.references;
            return atom;
        }
    }
    uint16_t atom = First_String_Atom;
    while (atoms.count(atom) != 0) {
        ++atom;
    }
    atoms[atom] = {name, 1};
    return atom;
}

void Local_Kernel_Transport::Delete_Atom(uint16_t atom) {
    auto it = atoms.find(atom);
    if (it != atoms.end() && --it->second.references == 0) {
        atoms.erase(it);
    }
}

std::string Local_Kernel_Transport::Atom_Name(uint16_t atom) const {
    auto it = atoms.find(atom);
    return it == atoms.end() ? std::string() : it->second.name;
}

uint64_t Local_Kernel_Transport::Create_Mapping(const char* name, uint32_t size) {
    last_error = 0;
    for (const auto& [handle, rec] : handles) {
        if (rec.name == name) {
            last_error = Link_Error_Already_Exists;
            uint64_t again = next_handle++;
            handles[again] = rec;
            return again;
        }
    }
    uint64_t handle = next_handle++;
    handles[handle] = {name, std::make_shared<std::vector<uint8_t>>(size)};
    return handle;
}

uint8_t* Local_Kernel_Transport::Map_View(uint64_t mapping) {
    auto it = handles.find(mapping);
    if (it == handles.end()) {
        last_error = Error_Invalid_Handle;
        return nullptr;
    }
    uint8_t* view = it->second.memory->data();
    views[view] = it->second.memory;
    return view;
}

void Local_Kernel_Transport::Unmap_View(uint8_t* view) {
    views.erase(view);
}

void Local_Kernel_Transport::Close_Handle(uint64_t handle) {
    handles.erase(handle);
}

uint8_t* Local_Kernel_Transport::Find_Block(uint64_t wparam, uint32_t& size) {
    std::string name = Atom_Name(static_cast<uint16_t>(wparam & 0xFFFF));
    if (name.empty()) {
        return nullptr;
    }
    for (auto& [handle, rec] : handles) {
        if (rec.name == name) {
            size = static_cast<uint32_t>(rec.memory->size());
            return rec.memory->data();
        }
    }
    return nullptr;
}

} // namespace quilmark
