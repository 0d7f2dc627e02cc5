import pytest

from desk import Desk
from panel import Panel
from xserver import XServer


@pytest.fixture(scope="session")
def servers():
    """The X server of the run; a test that kills it leaves the next one a new one."""
    running = []
    yield running
    for server in running:
        server.end()


@pytest.fixture
def server(servers):
    if not servers or not servers[-1].is_running():
        servers.append(XServer())
    return servers[-1]


@pytest.fixture
def desk(server):
    a_desk = Desk(server)
    yield a_desk
    a_desk.close()
    a_desk.print_logs()  # shown where the test has failed


@pytest.fixture
def panel(desk):
    return Panel(desk)
