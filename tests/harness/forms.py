"""Settings as JSON, for a file or a shell: what JSON has no form for is written as lumoractl writes it.

    load('{"$data": "TG8="}') == b"Lo"
"""
import base64
import json
import math
from datetime import datetime

from harness.archives import EPOCH, Date


def dump(value, indent=None):
    return json.dumps(_plain(value), indent=indent, ensure_ascii=False)


def load(text):
    """Raises ValueError for what is no JSON, or a form that there is not."""
    return _whole(json.loads(text))


def _plain(value):
    if isinstance(value, dict):
        return {"$" + key if key.startswith("$") else key: _plain(item) for key, item in value.items()}
    if isinstance(value, list):
        return [_plain(item) for item in value]
    if isinstance(value, bytes):
        return {"$data": base64.b64encode(value).decode()}
    if isinstance(value, Date):
        return {"$date": value.seconds}
    if isinstance(value, float) and not math.isfinite(value):
        return {"$real": str(value)}
    return value


def _whole(value):
    if isinstance(value, list):
        return [_whole(item) for item in value]
    if not isinstance(value, dict):
        return value
    if len(value) == 1:
        (key, content), = value.items()
        if key == "$data":
            return base64.b64decode(content, validate=True)
        if key == "$date":
            if isinstance(content, str):
                return Date((datetime.fromisoformat(content) - EPOCH).total_seconds())
            return Date(float(content))
        if key == "$real":
            return float(content)
    if any(key.startswith("$") and not key.startswith("$$") for key in value):
        raise ValueError("a key with one $ that is no form")
    return {key.removeprefix("$") if key.startswith("$") else key: _whole(item) for key, item in value.items()}
