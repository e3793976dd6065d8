import sys

from kirolab.commandline import main

sys.exit(main())
