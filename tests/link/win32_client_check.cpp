// Under Wine, against the mock module: the client with the Win32 transport, no bridge in
// between. Opens the link, reads the chart's four values, and checks the raw values.
#include <cstdio>

#include "link/fsuipc.h"
#include "mock_table.h"
#include "win32_transport.h"

int main() {
    using namespace quilmark;
    Win32_Transport transport;
    Fsuipc_Rec link;
    link.transport = &transport;
    Link_Result result = Link_Result::Ok;
    Link_Reset(link);
    if (!Link_Open(link, Fsuipc_Fs2002, result)) {
        std::printf("win32 client: Link_Open failed with result %d\n", static_cast<int>(result));
        return 1;
    }
    int32_t lat = 0, lon = 0, heading = 0;
    uint16_t altimeter = 0;
    bool ok = Link_Read(link, 0x0564, 4, &lat, result) &&
              Link_Read(link, 0x056C, 4, &lon, result) &&
              Link_Read(link, 0x0580, 4, &heading, result) &&
              Link_Read(link, 0x0EC6, 2, &altimeter, result) && Link_Process(link, result);
    Link_Close(link);
    Link_Close(link);
    std::printf("win32 client: result %d, module version 0x%08X, sim %d, raw lat %d lon %d "
                "heading %d altimeter %u\n",
                static_cast<int>(result), static_cast<unsigned>(link.link_module_version),
                link.link_sim_version, lat, lon, heading, altimeter);
    bool expected = lat == Mock_Lat_Raw && lon == Mock_Lon_Raw && heading == Mock_Heading_Raw &&
                    altimeter == Mock_Altimeter_Raw && link.link_sim_version == 6;
    return ok && expected ? 0 : 1;
}
