"""What the descriptions in `_classes.py` have in common."""

from __future__ import annotations

from collections.abc import Iterator
from types import TracebackType
from typing import Any, Protocol, Self, TypeVar

T_co = TypeVar("T_co", covariant=True)


class Reference(Protocol):
    """An object of the library."""

    def release(self) -> None:
        """Lets go of the object now. Once more does nothing; everything else is an error from then on."""

    def __enter__(self) -> Self: ...

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None: ...


class Items(Reference, Protocol[T_co]):
    """A collection of the library: positions from 1, and keys."""

    def __len__(self) -> int: ...

    def __iter__(self) -> Iterator[T_co]: ...

    def __reversed__(self) -> Iterator[T_co]: ...

    def __getitem__(self, index: Any) -> T_co: ...

    def __call__(self, index: Any) -> T_co: ...
